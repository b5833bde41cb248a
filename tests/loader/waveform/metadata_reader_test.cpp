// SPDX-License-Identifier: BSD-3-Clause
// The record after a successful read.
#include "tests/loader/waveform/scan_database.h"
#include "tests/support/output_log.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace {

using Record = Riegl::AttributesForFWFProcessing;
using support::ScanDatabase;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string flipped = "console|WARNING sing of t_ref will be flipped: ";

std::string parameters(const std::string& a, const std::string& b, const std::string& gamma,
                       const std::string& omega) {
  return R"({"parameter": {"A": [)" + a + R"(], "B": [)" + b + R"(], "gamma": [)" + gamma +
         R"(], "omega": [)" + omega + "]}}";
}

std::string channel(const std::string& terms) {
  return parameters(terms, terms, terms, terms);
}

/// The record read from a database with these channels.
Record recordWithChannels(const std::string& json) {
  const support::OutputLog log;
  Record record;
  EXPECT_EQ(ScanDatabase().with("riegl.exponential_decomposition", json).readInto(record), "");
  EXPECT_THAT(log.said(), ElementsAre(flipped));
  return record;
}

TEST(Reader, FillsTheNumbersAndTexts) {
  const support::OutputLog log;
  Record record;
  EXPECT_EQ(ScanDatabase().readInto(record), "");
  EXPECT_THAT((std::vector{record.group_velocity, record.sample_interval, record.wavelength, record.t_ref,
                           record.unambiguous_range, record.ampl_unit, record.refl_delta}),
              ElementsAre(299711000.0, 2.0e-9, 1550, -0.5, 1499.5, 0.02, 0.25));
  EXPECT_THAT((std::vector{record.serial_number, record.build, record.device_type}),
              ElementsAre("S1234", "b7", "kind"));
  EXPECT_THAT(log.said(), ElementsAre(flipped));
}

TEST(Reader, FillsTheArrays) {
  Record record;
  ScanDatabase().readInto(record);
  EXPECT_THAT(record.refl_tableC->values(), ElementsAre(1.5F, 2.5F, 3.5F));
  EXPECT_THAT(record.a_real->values(), ElementsAre(1, 2));
  EXPECT_THAT(record.a_imag->values(), ElementsAre(3, 4));
  EXPECT_THAT(record.b_real->values(), ElementsAre(5, 6));
  EXPECT_THAT(record.b_imag->values(), ElementsAre(7, 8));
}

TEST(Reader, SetsTheTicksToFourPicoseconds) {
  Record record;
  ScanDatabase().readInto(record);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(record.SHOT_TIMESTAMP_HR_RESOLUTION), 0x3D919799812DEA11U);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(record.WFM_SBL_TIME_OFFSET_RESOLUTION), 0x3D919799812DEA11U);
}

TEST(Reader, KeepsTheTimeBaseIndentedAndSorted) {
  Record record;
  ScanDatabase().readInto(record);
  EXPECT_EQ(record.time_base,
            "{\n    \"epoch\": \"2015-10-27T00:00:00+00:00\",\n    \"source\": \"GNSS\"\n}\n");
}

TEST(Reader, TakesTheLastOfTheSampleDataFiles) {
  Record record;
  ScanDatabase()
      .with("riegl.waveform_info", R"({"sample_data_files": [{"sample_interval": 1.0e-9, "delta_st": 3},
                                                             {"sample_interval": 2.0e-9}]})")
      .readInto(record);
  EXPECT_EQ(record.sample_interval, 2.0e-9);
  EXPECT_EQ(record.t_ref, -3);
}

TEST(Reader, TurnsATimeReferenceOfZeroIntoNegativeZero) {
  Record record;
  ScanDatabase().with("riegl.waveform_info", R"({"sample_interval": 1, "delta_st": 0})").readInto(record);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(record.t_ref), 0x8000000000000000U);
  EXPECT_THAT(record.speak(), testing::HasSubstr("\nt_ref(delta_st): -0\n"));
}

TEST(Reader, FlipsANegativeTimeReferenceToo) {
  Record record;
  ScanDatabase()
      .with("riegl.waveform_info", R"({"sample_interval": 1, "delta_st": "-7e-8"})")
      .readInto(record);
  EXPECT_EQ(record.t_ref, 7e-8);
}

TEST(SecondRead, FlipsTheNewTimeReferenceOnce) {
  const support::OutputLog log;
  Record record;
  ScanDatabase().readInto(record);
  EXPECT_EQ(ScanDatabase().readInto(record), "");
  EXPECT_EQ(record.t_ref, -0.5);
  EXPECT_THAT(log.said(), ElementsAre(flipped, flipped));
}

TEST(SecondRead, ClearsWhatTheMetadataLacks) {
  Record record;
  ScanDatabase().readInto(record);
  EXPECT_EQ(ScanDatabase()
                .with("riegl.device", R"({"serial_number": "S2"})")
                .with("riegl.mta_settings", "{}")
                .readInto(record),
            "");
  EXPECT_EQ(record.serial_number, "S2");
  EXPECT_EQ(record.build + record.device_type, "");
  EXPECT_EQ(record.unambiguous_range, 0);
}

TEST(SecondRead, KeepsReflectanceAndSystemWaveWhereTheMetadataLacksThem) {
  Record record;
  ScanDatabase().readInto(record);
  const Record before = record;
  EXPECT_EQ(ScanDatabase()
                .without("debug.rxp_parameters")
                .without("riegl.exponential_decomposition")
                .readInto(record),
            "");
  EXPECT_EQ(record.ampl_unit, 0.02);
  EXPECT_EQ(record.refl_delta, 0.25);
  EXPECT_EQ(record.refl_tableC.get(), before.refl_tableC.get());
  EXPECT_EQ(record.b_imag.get(), before.b_imag.get());
}

TEST(SecondRead, ReleasesTheEarlierArrays) {
  Record record;
  ScanDatabase().readInto(record);
  const Torvel::WeakPtr<Torvel::Chunk<double>, Torvel::ChunkBase> wave = record.a_real;
  const Torvel::WeakPtr<Torvel::Chunk<float>, Torvel::ChunkBase> table = record.refl_tableC;
  ScanDatabase().readInto(record);
  EXPECT_FALSE(wave || table);
}

TEST(Reader, ReadsADeviceWithoutABuild) {
  const support::OutputLog log;
  Record record;
  EXPECT_EQ(
      ScanDatabase().with("riegl.device", R"({"serial_number": "S2", "device_type": "t"})").readInto(record),
      "");
  EXPECT_EQ(record.build, "");
  EXPECT_EQ(record.device_type, "t");
  EXPECT_THAT(log.said(), ElementsAre(flipped));
}

TEST(Reader, ReadsNumbersFromTexts) {
  Record record;
  ScanDatabase()
      .with("riegl.atmosphere", R"({"group_velocity": "2.5e8", "wavelength": "unknown"})")
      .readInto(record);
  EXPECT_EQ(record.group_velocity, 2.5e8);
  EXPECT_EQ(record.wavelength, 0);
}

TEST(Reader, KeepsATableBeyondTheLimit) {
  const support::OutputLog log;
  Record record;
  EXPECT_EQ(ScanDatabase()
                .with("debug.rxp_parameters",
                      R"({"pointcloud": {"refltab": [)" + support::repeated(64001, "1") + "]}}")
                .readInto(record),
            "");
  EXPECT_EQ(record.refl_tableC->size(), 64001U);
  EXPECT_THAT(
      log.said(),
      ElementsAre(flipped, "console|[parse_reflectance_table] Warning: refl_table exceeds 64k entries"));
}

TEST(SystemWave, IsNullWithTheReferenceChannelAlone) {
  const Record record = recordWithChannels(R"({"0": )" + channel("1, 2") + "}");
  EXPECT_FALSE(record.a_real || record.a_imag || record.b_real || record.b_imag);
}

TEST(SystemWave, IsNullWithoutAnyChannel) {
  EXPECT_FALSE(recordWithChannels("{}").a_real);
}

TEST(SystemWave, IsTheLastChannelInTheOrderOfBytes) {
  const std::string three =
      R"({"0": )" + channel("5") + R"(, "1": )" + channel("1") + R"(, "2": )" + channel("2") + "}";
  EXPECT_THAT(recordWithChannels(three).b_real->values(), ElementsAre(2));
  const std::string ten = R"({"2": )" + channel("2") + R"(, "10": )" + channel("10") + "}";
  EXPECT_THAT(recordWithChannels(ten).b_real->values(), ElementsAre(2));
}

TEST(SystemWave, PassesOverExactlyTheNameZero) {
  EXPECT_THAT(recordWithChannels(R"({"00": )" + channel("3") + "}").a_real->values(), ElementsAre(3));
  EXPECT_THAT(recordWithChannels(R"({"0 ": )" + channel("4") + "}").a_real->values(), ElementsAre(4));
  EXPECT_THAT(recordWithChannels(R"({"": )" + channel("5") + "}").a_real->values(), ElementsAre(5));
  EXPECT_THAT(recordWithChannels(R"({"0\u0000": )" + channel("6") + "}").a_real->values(), ElementsAre(6));
}

TEST(SystemWave, IsFourEmptyArraysWhereTheLastChannelIsEmpty) {
  const Record record = recordWithChannels(R"({"1": )" + channel("1, 2") + R"(, "2": {}})");
  ASSERT_TRUE(record.a_real && record.a_imag && record.b_real && record.b_imag);
  EXPECT_EQ(record.a_real->size() + record.a_imag->size() + record.b_real->size() + record.b_imag->size(),
            0U);
}

TEST(SystemWave, OfUnequalLengthsStopsAtTheShortest) {
  const Record record =
      recordWithChannels(R"({"1": )" + parameters("1, 2, 3", "4", "5, 6", "7, 8, 9, 10") + "}");
  EXPECT_THAT(record.a_real->values(), ElementsAre(1, 0, 0));
  EXPECT_THAT(record.a_imag->values(), ElementsAre(4));
  EXPECT_THAT(record.b_real->values(), ElementsAre(5, 0));
  EXPECT_THAT(record.b_imag->values(), ElementsAre(7, 0, 0, 0));
}

TEST(SystemWave, WithoutFrequenciesIsZeros) {
  const Record record = recordWithChannels(R"({"1": )" + parameters("1, 2", "3, 4", "5, 6", "") + "}");
  EXPECT_THAT(record.a_real->values(), ElementsAre(0, 0));
  EXPECT_THAT(record.b_imag->values(), IsEmpty());
}

} // namespace
