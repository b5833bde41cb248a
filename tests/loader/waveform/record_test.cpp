// SPDX-License-Identifier: BSD-3-Clause
// The record as a value: defaults, order of members, text, replacement of the time reference.
#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/support/chunk_with.h"
#include "tests/support/output_log.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <gmock/gmock.h>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using Record = Riegl::AttributesForFWFProcessing;
using Doubles = Torvel::StrongPtr<Torvel::Chunk<double>, Torvel::ChunkBase>;
using Floats = Torvel::StrongPtr<Torvel::Chunk<float>, Torvel::ChunkBase>;
using testing::ElementsAre;
using testing::HasSubstr;

static_assert(!std::is_polymorphic_v<Record>);
static_assert(std::is_same_v<decltype(Record::a_real), Doubles> &&
              std::is_same_v<decltype(Record::a_imag), Doubles>);
static_assert(std::is_same_v<decltype(Record::b_real), Doubles> &&
              std::is_same_v<decltype(Record::b_imag), Doubles>);
static_assert(std::is_same_v<decltype(Record::refl_tableC), Floats>);
static_assert(std::is_same_v<decltype(&Record::speak), std::string (Record::*)() const>);
static_assert(std::is_same_v<decltype(&Record::overwrite_t_ref), void (Record::*)(const double&)>);
static_assert(std::is_same_v<decltype(&Record::getAttributesViaJson),
                             std::string (Record::*)(const riegl::rdb::Pointcloud&)>);

const std::string freshText = "AttributesForFWFProcessing:\n"
                              "group_velocity: 0\n"
                              "sample_interval: 0\n"
                              "wavelength: 0\n"
                              "t_ref(delta_st): 0\n"
                              "serial_number: \n"
                              "device_type: \n"
                              "time_base: \n"
                              "unambiguous_range: 0\n"
                              "build: \n"
                              "SHOT_TIMESTAMP_HR_RESOLUTION: 0\n"
                              "WFM_SBL_TIME_OFFSET_RESOLUTION: 0\n"
                              "ampl_unit: 0.009999999776482582\n"
                              "refl_delta: 0.1373470495519926\n";

Record filledRecord() {
  Record record;
  record.group_velocity = 299711000;
  record.sample_interval = 1.00503e-09;
  record.wavelength = 1550.5;
  record.t_ref = -0.0;
  record.serial_number = "S1";
  record.device_type = "kind";
  record.time_base = "{\n    \"a\": 1\n}\n";
  record.unambiguous_range = 1e300;
  record.build = "b7";
  record.SHOT_TIMESTAMP_HR_RESOLUTION = 4e-12;
  record.WFM_SBL_TIME_OFFSET_RESOLUTION = -0.1;
  record.ampl_unit = 0.01;
  record.refl_delta = 1.0 / 3.0;
  return record;
}

const std::string filledText = "AttributesForFWFProcessing:\n"
                               "group_velocity: 299711000\n"
                               "sample_interval: 1.00503e-09\n"
                               "wavelength: 1550.5\n"
                               "t_ref(delta_st): -0\n"
                               "serial_number: S1\n"
                               "device_type: kind\n"
                               "time_base: {\n    \"a\": 1\n}\n\n"
                               "unambiguous_range: 1e+300\n"
                               "build: b7\n"
                               "SHOT_TIMESTAMP_HR_RESOLUTION: 4e-12\n"
                               "WFM_SBL_TIME_OFFSET_RESOLUTION: -0.1\n"
                               "ampl_unit: 0.01\n"
                               "refl_delta: 0.3333333333333333\n";

/// The text of the record after the line of `refl_delta`.
std::string tableText(const std::vector<float>& values) {
  Record record;
  record.refl_tableC = support::chunkWith(values);
  return record.speak().substr(freshText.size());
}

TEST(FreshRecord, HoldsZerosAndNullArrays) {
  const Record record;
  for (const double value : {record.group_velocity, record.sample_interval, record.wavelength, record.t_ref,
                             record.SHOT_TIMESTAMP_HR_RESOLUTION, record.WFM_SBL_TIME_OFFSET_RESOLUTION,
                             record.unambiguous_range}) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(value), 0U);
  }
  EXPECT_FALSE(record.a_real || record.a_imag || record.b_real || record.b_imag || record.refl_tableC);
  EXPECT_EQ(record.serial_number + record.device_type + record.time_base + record.build, "");
}

TEST(FreshRecord, HasTheTwoReflectanceDefaultsToTheBit) {
  const Record record;
  EXPECT_EQ(std::bit_cast<std::uint64_t>(record.refl_delta), 0x3FC194968F039237U);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(record.ampl_unit), 0x3F847AE140000000U);
}

TEST(FreshRecord, HasItsMembersInOrder) {
  const Record r;
  const std::vector<const void*> members = {&r.group_velocity,
                                            &r.sample_interval,
                                            &r.wavelength,
                                            &r.t_ref,
                                            &r.serial_number,
                                            &r.device_type,
                                            &r.time_base,
                                            &r.SHOT_TIMESTAMP_HR_RESOLUTION,
                                            &r.WFM_SBL_TIME_OFFSET_RESOLUTION,
                                            &r.build,
                                            &r.unambiguous_range,
                                            &r.a_real,
                                            &r.a_imag,
                                            &r.b_real,
                                            &r.b_imag,
                                            &r.refl_delta,
                                            &r.refl_tableC,
                                            &r.ampl_unit};
  EXPECT_EQ(members.front(), static_cast<const void*>(&r));
  EXPECT_TRUE(std::is_sorted(members.begin(), members.end()));
  EXPECT_EQ(static_cast<const char*>(members.back()) + sizeof(double),
            reinterpret_cast<const char*>(&r) + sizeof(Record));
}

TEST(FreshRecord, SpeaksTheHeadAndThirteenValues) {
  EXPECT_EQ(Record().speak(), freshText);
}

TEST(RecordText, ShowsEachValueOnItsLine) {
  EXPECT_EQ(filledRecord().speak(), filledText);
}

TEST(RecordText, HasRoomForTheLongestNumber) {
  Record record;
  record.group_velocity = -1.7976931348623157e+308;
  record.wavelength = std::numeric_limits<double>::quiet_NaN();
  record.t_ref = -std::numeric_limits<double>::infinity();
  EXPECT_THAT(record.speak(), HasSubstr("group_velocity: -1.7976931348623157e+308\nsample_interval: 0\n"
                                        "wavelength: nan\nt_ref(delta_st): -inf\n"));
}

TEST(RecordText, KeepsZeroBytesOfItsTexts) {
  Record record;
  record.serial_number = std::string("a\0b", 3);
  EXPECT_THAT(record.speak(), HasSubstr(std::string("serial_number: a\0b\n", 19)));
}

TEST(RecordText, ShowsThreeTableElementsAsFloatsAndAClosingLine) {
  EXPECT_EQ(tableText({0.1F, -0.0F, 1e10F, 7.0F}), "refl_tableC[0]: 0.1\nrefl_tableC[1]: -0\n"
                                                   "refl_tableC[2]: 1e+10\nrefl_tableC[2]: ...\n");
}

TEST(RecordText, HasTheClosingLineForExactlyThreeElements) {
  EXPECT_EQ(tableText({1, 2, 3}),
            "refl_tableC[0]: 1\nrefl_tableC[1]: 2\nrefl_tableC[2]: 3\nrefl_tableC[2]: ...\n");
}

TEST(RecordText, StopsAtTheSizeOfAShorterTable) {
  EXPECT_EQ(tableText({1, 2}), "refl_tableC[0]: 1\nrefl_tableC[1]: 2\n");
  EXPECT_EQ(tableText({1}), "refl_tableC[0]: 1\n");
  EXPECT_EQ(tableText({}), "");
}

TEST(RecordText, LeavesTheSystemWaveOutAndPrintsNothing) {
  const support::OutputLog log;
  Record record;
  record.a_real = Doubles(new Torvel::Chunk<double>(4));
  EXPECT_EQ(record.speak(), freshText);
  EXPECT_THAT(log.said(), ElementsAre());
}

TEST(TimeReference, IsOverwrittenUnderAFixedLine) {
  const support::OutputLog log;
  Record record;
  record.overwrite_t_ref(-2.5e-8);
  EXPECT_EQ(record.t_ref, -2.5e-8);
  EXPECT_THAT(log.said(), ElementsAre("console|Warning: Overwrite t_ref 1.58875e-7 based on date: "));
  EXPECT_THAT(record.speak(), HasSubstr("\nt_ref(delta_st): -2.5e-08\n"));
}

TEST(CopiedRecord, SharesItsArrays) {
  Record record;
  record.a_imag = Doubles(new Torvel::Chunk<double>(2));
  const Record copy = record;
  EXPECT_EQ(copy.a_imag.get(), record.a_imag.get());
  EXPECT_EQ(record.a_imag.counts()->strong(), 2);
}

} // namespace
