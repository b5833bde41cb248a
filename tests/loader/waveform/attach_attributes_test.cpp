// SPDX-License-Identifier: BSD-3-Clause
// The attributes of each object: names, order, types, values, and shared arrays.
#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/support/output_log.h"

#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <vector>

namespace {

using Record = Riegl::AttributesForFWFProcessing;
using Doubles = Torvel::StrongPtr<Torvel::Chunk<double>, Torvel::ChunkBase>;
using Floats = Torvel::StrongPtr<Torvel::Chunk<float>, Torvel::ChunkBase>;
using Names = std::vector<std::string>;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

const std::string noWave =
    "console| rdbx2z4::addAttributeToZ4File: Warning NO expsum_a and expsum_b parameter! ";
const Names waveNames = {"WaveformSampleInterval", "a_real", "a_imag", "b_real", "b_imag"};
const Names waveformGridNames = {"WaveformSampleInterval",
                                 "Scanner Group Velocity",
                                 "Scanner Serial Number",
                                 "Scanner Build Number",
                                 "Scanner Type",
                                 "Wavelength[nm]",
                                 "RDB_Segment"};
const Names sevenNames = {
    "Scanner Group Velocity", "Scanner Serial Number", "Scanner Build Number", "Scanner Type",
    "Wavelength[nm]",         "UnambiguousRange",      "RDB_Segment"};
const Names tenNames = {"Scanner Group Velocity",
                        "Scanner Serial Number",
                        "Scanner Build Number",
                        "Scanner Type",
                        "Wavelength[nm]",
                        "UnambiguousRange",
                        "RDB_Segment",
                        "reflectance_calculation_delta",
                        "ampl_unit",
                        "reflectance_calculation_table"};

Record fullRecord() {
  Record record;
  record.group_velocity = 3e8;
  record.sample_interval = 2e-9;
  record.wavelength = 1550.1;
  record.t_ref = -0.5;
  record.serial_number = "S1";
  record.device_type = "kind";
  record.build = "b7";
  record.unambiguous_range = 1499.5;
  record.refl_delta = 0.25;
  record.ampl_unit = 0.02;
  for (Doubles* const array : {&record.a_real, &record.a_imag, &record.b_real, &record.b_imag}) {
    *array = new Torvel::Chunk<double>(2);
  }
  record.refl_tableC = new Torvel::Chunk<float>(3);
  return record;
}

/// The four objects that a record is attached to; a test sets some of them to null.
struct DataSet {
  Record::GridPointer waveformGrid = new Nimbra::Grid;
  Record::GridPointer pointGrid = new Nimbra::Grid;
  Record::FieldPointer waveformField = new Nimbra::Field(nullptr);
  Record::FieldPointer tRefField = new Nimbra::Field(nullptr);

  std::string attach(const Record& record, int segment = 4) const {
    return record.addAttributeToZ4File(waveformGrid, pointGrid, waveformField, tRefField, segment);
  }
};

template <class Pointer>
Names namesOn(const Pointer& object) {
  Names names;
  for (const auto& attribute : object->attributes()) {
    names.push_back(attribute.name);
  }
  return names;
}

/// The only element of an attribute, which must have exactly that type.
template <class T, class Pointer>
T valueOn(const Pointer& object, const std::string& name) {
  const Torvel::StrongPtr<Torvel::Chunk<T>, Torvel::ChunkBase> chunk =
      object->attributes().getAttribute(name);
  if (!chunk || chunk->size() != 1) {
    ADD_FAILURE() << name << ": expected a chunk of that type with one element";
    return T();
  }
  return chunk->values().front();
}

template <class Pointer>
const Torvel::ChunkBase* chunkOn(const Pointer& object, const std::string& name) {
  return object->attributes().getAttribute(name).get();
}

void expectScannerOn(const Record::GridPointer& grid) {
  EXPECT_EQ(valueOn<double>(grid, "Scanner Group Velocity"), 3e8);
  EXPECT_EQ(valueOn<std::string>(grid, "Scanner Serial Number"), "S1");
  EXPECT_EQ(valueOn<std::string>(grid, "Scanner Build Number"), "b7");
  EXPECT_EQ(valueOn<std::string>(grid, "Scanner Type"), "kind");
  EXPECT_EQ(valueOn<float>(grid, "Wavelength[nm]"), static_cast<float>(1550.1));
  EXPECT_EQ(valueOn<int>(grid, "RDB_Segment"), 4);
}

TEST(Attaching, PutsEveryNameInOrder) {
  const support::OutputLog log;
  const DataSet data;
  EXPECT_EQ(data.attach(fullRecord()), "");
  EXPECT_EQ(namesOn(data.waveformField), waveNames);
  EXPECT_EQ(namesOn(data.tRefField), Names{"t_ref"});
  EXPECT_EQ(namesOn(data.waveformGrid), waveformGridNames);
  EXPECT_EQ(namesOn(data.pointGrid), tenNames);
  EXPECT_THAT(log.said(), IsEmpty());
}

TEST(Attaching, PutsTheValuesWithTheirTypes) {
  const DataSet data;
  data.attach(fullRecord());
  expectScannerOn(data.waveformGrid);
  expectScannerOn(data.pointGrid);
  EXPECT_EQ(valueOn<double>(data.waveformField, "WaveformSampleInterval"), 2e-9);
  EXPECT_EQ(valueOn<double>(data.waveformGrid, "WaveformSampleInterval"), 2e-9);
  EXPECT_EQ(valueOn<double>(data.tRefField, "t_ref"), -0.5);
  EXPECT_EQ(valueOn<double>(data.pointGrid, "UnambiguousRange"), 1499.5);
  EXPECT_EQ(valueOn<double>(data.pointGrid, "reflectance_calculation_delta"), 0.25);
  EXPECT_EQ(valueOn<double>(data.pointGrid, "ampl_unit"), 0.02);
}

TEST(Attaching, SharesTheArrays) {
  const DataSet data;
  const Record record = fullRecord();
  data.attach(record);
  EXPECT_EQ(chunkOn(data.waveformField, "a_real"), record.a_real.get());
  EXPECT_EQ(chunkOn(data.waveformField, "a_imag"), record.a_imag.get());
  EXPECT_EQ(chunkOn(data.waveformField, "b_real"), record.b_real.get());
  EXPECT_EQ(chunkOn(data.waveformField, "b_imag"), record.b_imag.get());
  EXPECT_EQ(chunkOn(data.pointGrid, "reflectance_calculation_table"), record.refl_tableC.get());
  EXPECT_EQ(record.a_real.counts()->strong(), 2);
  EXPECT_EQ(record.refl_tableC.counts()->strong(), 2);
}

TEST(Attaching, BeginsWithTheSystemWaveAndEndsWithThePointGrid) {
  DataSet data;
  data.tRefField = data.waveformField;
  data.pointGrid = data.waveformGrid;
  data.attach(fullRecord());
  EXPECT_EQ(namesOn(data.waveformField).back(), "t_ref");
  Names onTheGrid = waveformGridNames;
  onTheGrid.insert(onTheGrid.end(), {"UnambiguousRange", "reflectance_calculation_delta", "ampl_unit",
                                     "reflectance_calculation_table"});
  EXPECT_EQ(namesOn(data.pointGrid), onTheGrid);
}

TEST(SharedArrays, OutliveTheRecord) {
  const DataSet data;
  auto record = std::make_unique<Record>(fullRecord());
  (*record->refl_tableC)[2] = 6.5F;
  const Torvel::ChunkBase* const table = record->refl_tableC.get();
  data.attach(*record);
  record.reset();
  const Floats held = data.pointGrid->attributes().getAttribute("reflectance_calculation_table");
  ASSERT_EQ(held.get(), table);
  EXPECT_THAT(held->values(), ElementsAre(0, 0, 6.5F));
}

TEST(SharedArrays, AreReleasedWithTheirLastHolder) {
  const Torvel::WeakPtr<Torvel::Chunk<double>, Torvel::ChunkBase> wave = [] {
    const DataSet data;
    const Record record = fullRecord();
    data.attach(record);
    return Torvel::WeakPtr<Torvel::Chunk<double>, Torvel::ChunkBase>(record.b_imag);
  }();
  EXPECT_FALSE(wave);
}

TEST(AttachingTwice, LeavesTheSameNamesWithTheLaterChunks) {
  const DataSet data;
  data.attach(fullRecord(), 1);
  const Record later = fullRecord();
  data.attach(later);
  EXPECT_EQ(namesOn(data.waveformField), waveNames);
  EXPECT_EQ(namesOn(data.pointGrid), tenNames);
  EXPECT_EQ(chunkOn(data.waveformField, "b_imag"), later.b_imag.get());
  expectScannerOn(data.waveformGrid);
}

TEST(WithoutAWaveformField, OnlyThePointGridIsTouched) {
  const support::OutputLog log;
  DataSet data;
  data.waveformField = nullptr;
  Record record = fullRecord();
  record.a_real = nullptr;
  EXPECT_EQ(data.attach(record), "");
  EXPECT_TRUE(data.waveformGrid->attributes().empty() && data.tRefField->attributes().empty());
  EXPECT_EQ(namesOn(data.pointGrid), tenNames);
  EXPECT_THAT(log.said(), IsEmpty());
}

TEST(WithoutAWaveformField, NullsThatWouldNotBeTouchedAreNoFault) {
  DataSet data;
  data.waveformField = nullptr;
  data.waveformGrid = nullptr;
  data.tRefField = nullptr;
  Record record = fullRecord();
  record.refl_tableC = nullptr;
  EXPECT_EQ(data.attach(record), "");
  EXPECT_EQ(namesOn(data.pointGrid), sevenNames);
}

void expectAWarningAndTheRest(const Record& record) {
  const support::OutputLog log;
  const DataSet data;
  EXPECT_EQ(data.attach(record), "");
  EXPECT_THAT(log.said(), ElementsAre(noWave));
  EXPECT_EQ(namesOn(data.waveformField), Names{"WaveformSampleInterval"});
  EXPECT_EQ(namesOn(data.tRefField), Names{"t_ref"});
  EXPECT_EQ(namesOn(data.waveformGrid), waveformGridNames);
}

TEST(WithoutASystemWave, AWarningIsGivenAndTheRestAttached) {
  Record record = fullRecord();
  record.a_real = nullptr;
  expectAWarningAndTheRest(record);
}

TEST(WithAnEmptySystemWave, AWarningIsGivenAndTheRestAttached) {
  Record record = fullRecord();
  record.a_real = new Torvel::Chunk<double>(0);
  expectAWarningAndTheRest(record);
}

TEST(SystemWave, IsJudgedByItsFirstArrayAlone) {
  const support::OutputLog log;
  const DataSet data;
  Record record = fullRecord();
  record.a_imag = nullptr;
  record.b_real = new Torvel::Chunk<double>(0);
  EXPECT_EQ(data.attach(record), "");
  EXPECT_EQ(namesOn(data.waveformField), waveNames);
  EXPECT_EQ(chunkOn(data.waveformField, "a_imag"), nullptr);
  EXPECT_EQ(chunkOn(data.waveformField, "b_real"), record.b_real.get());
  EXPECT_THAT(log.said(), IsEmpty());
}

TEST(WithoutATable, NoReflectanceIsAttached) {
  for (const Floats& table : {Floats(), Floats(new Torvel::Chunk<float>(0))}) {
    const DataSet data;
    Record record = fullRecord();
    record.refl_tableC = table;
    EXPECT_EQ(data.attach(record), "");
    EXPECT_EQ(namesOn(data.pointGrid), sevenNames);
  }
}

std::string reportOf(const std::string& missing) {
  return "addAttributeToZ4File: expected a grid or field, found null: " + missing +
         "; all other attributes were set";
}

TEST(NullWaveformGrid, IsReportedAfterEverythingElse) {
  DataSet data;
  data.waveformGrid = nullptr;
  EXPECT_EQ(data.attach(fullRecord()), reportOf("waveformGrid"));
  EXPECT_EQ(namesOn(data.waveformField), waveNames);
  EXPECT_EQ(namesOn(data.tRefField), Names{"t_ref"});
  EXPECT_EQ(namesOn(data.pointGrid), tenNames);
}

TEST(NullTimeReferenceField, IsReportedAfterEverythingElse) {
  DataSet data;
  data.tRefField = nullptr;
  EXPECT_EQ(data.attach(fullRecord()), reportOf("tRefField"));
  EXPECT_EQ(namesOn(data.waveformGrid), waveformGridNames);
  EXPECT_EQ(namesOn(data.pointGrid), tenNames);
}

TEST(AllNull, AreReportedInOneText) {
  DataSet data;
  data.waveformGrid = data.pointGrid = nullptr;
  data.tRefField = nullptr;
  EXPECT_EQ(data.attach(fullRecord()), reportOf("tRefField, waveformGrid, pointGrid"));
  EXPECT_EQ(namesOn(data.waveformField), waveNames);
  data.waveformField = nullptr;
  EXPECT_EQ(data.attach(fullRecord()), reportOf("pointGrid"));
}

} // namespace
