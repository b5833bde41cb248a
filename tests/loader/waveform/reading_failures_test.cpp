// SPDX-License-Identifier: BSD-3-Clause
// Metadata that is missing or damaged: the result, the messages in their order, and the record.
#include "tests/loader/waveform/read_state.h"
#include "tests/loader/waveform/scan_database.h"
#include "tests/support/output_log.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <gmock/gmock.h>
#include <ostream>
#include <sqlite3.h>
#include <string>
#include <vector>

namespace {

using Record = Riegl::AttributesForFWFProcessing;
using support::filledRecord;
using support::ScanDatabase;
using support::state;
using support::stoppedAfter;
using testing::ElementsAre;
using testing::ElementsAreArray;

const std::string flipped = "console|WARNING sing of t_ref will be flipped: ";
const std::string noJson = "cerr|Error: Invalid JSON format\n";
const std::string noTable = "console|[parse_reflectance_table] Invalid JSON format";
const std::string noWave =
    "console|Failed to parse exponential decomposition metadata - Have no System Wave!";
const std::string noKey = "Error: Key not found";

struct StopCase {
  std::string name;
  std::string item;
  std::string json; ///< "absent": there is no such item
  std::vector<std::string> said;
  std::vector<std::string> state;

  friend void PrintTo(const StopCase& test, std::ostream* stream) { *stream << test.name; }
};

class Stop : public testing::TestWithParam<StopCase> {};

TEST_P(Stop, LeavesTheRecordWhereItWas) {
  const support::OutputLog log;
  ScanDatabase database;
  GetParam().json == "absent" ? database.without(GetParam().item)
                              : database.with(GetParam().item, GetParam().json);
  Record record = filledRecord();
  EXPECT_EQ(database.readInto(record), noKey);
  EXPECT_THAT(log.said(), ElementsAreArray(GetParam().said));
  EXPECT_THAT(state(record), ElementsAreArray(GetParam().state));
  EXPECT_FALSE(record.refl_tableC || record.a_real);
}

INSTANTIATE_TEST_SUITE_P(
    Reader, Stop,
    testing::Values(
        StopCase{"NoAtmosphere", "riegl.atmosphere", "absent", {noJson}, stoppedAfter(0, "0")},
        StopCase{"AtmosphereIsEmpty", "riegl.atmosphere", "", {noJson}, stoppedAfter(0, "0")},
        StopCase{"AtmosphereIsAnArray",
                 "riegl.atmosphere",
                 R"([{"group_velocity": 1}])",
                 {noJson},
                 stoppedAfter(0, "0")},
        StopCase{"NoGroupVelocity", "riegl.atmosphere", R"({"wavelength": 1})", {}, stoppedAfter(0, "0")},
        StopCase{"GroupVelocityIsNull",
                 "riegl.atmosphere",
                 R"({"group_velocity": null})",
                 {},
                 stoppedAfter(0, "0")},
        StopCase{"NoWaveformItem", "riegl.waveform_info", "absent", {noJson}, stoppedAfter(1, "0")},
        StopCase{"NoSampleInterval", "riegl.waveform_info", R"({"delta_st": 1})", {}, stoppedAfter(1, "0")},
        StopCase{"NoWavelength", "riegl.atmosphere", R"({"group_velocity": 1})", {}, stoppedAfter(2, "0")},
        StopCase{"NoTimeReference",
                 "riegl.waveform_info",
                 R"({"sample_interval": 1})",
                 {flipped},
                 stoppedAfter(3, "0")},
        StopCase{"NoDevice", "riegl.device", "absent", {flipped, noJson}, stoppedAfter(4, "-")},
        StopCase{
            "NoSerialNumber", "riegl.device", R"({"device_type": "t"})", {flipped}, stoppedAfter(4, "-")},
        StopCase{"SerialNumberIsANumber",
                 "riegl.device",
                 R"({"serial_number": 7})",
                 {flipped},
                 stoppedAfter(4, "-")},
        StopCase{"NoTimeBase", "riegl.time_base", "absent", {flipped, noJson}, stoppedAfter(7, "-")},
        StopCase{"TimeBaseIsNoObject", "riegl.time_base", "[]", {flipped, noJson}, stoppedAfter(7, "-")}),
    [](const testing::TestParamInfo<StopCase>& test) { return test.param.name; });

TEST(StopAtTheTimeReference, HasFlippedItAlready) {
  Record record = filledRecord();
  ScanDatabase().with("riegl.waveform_info", R"({"sample_interval": 1})").readInto(record);
  EXPECT_TRUE(std::signbit(record.t_ref));
  EXPECT_EQ(record.t_ref, 0);
}

struct PassCase {
  std::string name;
  std::string item;
  std::string json;
  std::vector<std::string> said;

  friend void PrintTo(const PassCase& test, std::ostream* stream) { *stream << test.name; }
};

class Pass : public testing::TestWithParam<PassCase> {};

TEST_P(Pass, GoesOnToTheEnd) {
  const support::OutputLog log;
  ScanDatabase database;
  GetParam().json == "absent" ? database.without(GetParam().item)
                              : database.with(GetParam().item, GetParam().json);
  Record record = filledRecord();
  EXPECT_EQ(database.readInto(record), "");
  EXPECT_THAT(log.said(), ElementsAreArray(GetParam().said));
  EXPECT_EQ(record.WFM_SBL_TIME_OFFSET_RESOLUTION, 4e-12);
}

INSTANTIATE_TEST_SUITE_P(
    Reader, Pass,
    testing::Values(
        PassCase{"NoZoneItem", "riegl.mta_settings", "absent", {flipped, noJson}},
        PassCase{"NoZoneWidth", "riegl.mta_settings", "{}", {flipped}},
        PassCase{"NoReflectance", "debug.rxp_parameters", "absent", {flipped, noJson, noJson, noTable}},
        PassCase{"ReflectanceIsNoObject", "debug.rxp_parameters", "[]", {flipped, noJson, noJson, noTable}},
        PassCase{"NoPointcloud",
                 "debug.rxp_parameters",
                 "{}",
                 {flipped, "console|[parse_reflectance_table] No 'pointcloud' found in JSON"}},
        PassCase{"NoTable",
                 "debug.rxp_parameters",
                 R"({"pointcloud": 1})",
                 {flipped, "console|[parse_reflectance_table] No 'refltab' found in pointcloud"}},
        PassCase{"WaveIsAnArray",
                 "riegl.exponential_decomposition",
                 "[]",
                 {flipped, "cerr|JSON parse error: no error occurred\n", noWave}},
        PassCase{"NoWave",
                 "riegl.exponential_decomposition",
                 "absent",
                 {flipped, "cerr|JSON parse error: illegal value\n", noWave}}),
    [](const testing::TestParamInfo<PassCase>& test) { return test.param.name; });

TEST(MissingReflectance, KeepsTheDefaults) {
  const support::OutputLog log;
  Record record;
  ScanDatabase().without("debug.rxp_parameters").readInto(record);
  EXPECT_EQ(record.ampl_unit, Record().ampl_unit);
  EXPECT_EQ(record.refl_delta, Record().refl_delta);
  EXPECT_FALSE(record.refl_tableC);
  EXPECT_TRUE(record.a_real);
}

TEST(MissingSystemWave, LeavesTheArraysNull) {
  const support::OutputLog log;
  Record record;
  ScanDatabase().without("riegl.exponential_decomposition").readInto(record);
  EXPECT_FALSE(record.a_real || record.a_imag || record.b_real || record.b_imag);
  EXPECT_TRUE(record.refl_tableC);
}

TEST(MissingZone, ResetsTheRange) {
  Record record = filledRecord();
  ScanDatabase().without("riegl.mta_settings").readInto(record);
  EXPECT_EQ(record.unambiguous_range, 0);
}

/// Replaces the text of an item by a blob; the client raises an Error when the item is read.
void damage(const std::string& path, const std::string& item) {
  sqlite3* file = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &file), SQLITE_OK);
  const std::string statement = "UPDATE metadata SET value = x'00' WHERE name = '" + item + "'";
  EXPECT_EQ(sqlite3_exec(file, statement.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(sqlite3_changes(file), 1);
  sqlite3_close(file);
}

struct RaiseCase {
  std::string item;
  std::vector<std::string> state;

  friend void PrintTo(const RaiseCase& test, std::ostream* stream) { *stream << test.item; }
};

class Raise : public testing::TestWithParam<RaiseCase> {};

TEST_P(Raise, PassesThroughAndEndsTheRead) {
  const support::OutputLog log;
  const ScanDatabase database;
  database.write({.version = 1}); // opens although an item is damaged
  damage(database.path(), GetParam().item);
  Record record = filledRecord();
  EXPECT_THROW(database.readFile(record), riegl::rdb::Error);
  EXPECT_THAT(state(record), ElementsAreArray(GetParam().state));
  EXPECT_FALSE(record.a_real);
}

INSTANTIATE_TEST_SUITE_P(Reader, Raise,
                         testing::Values(RaiseCase{"riegl.atmosphere", stoppedAfter(0, "0")},
                                         RaiseCase{"riegl.waveform_info", stoppedAfter(1, "0")},
                                         RaiseCase{"riegl.device", stoppedAfter(4, "-")},
                                         RaiseCase{"riegl.time_base", stoppedAfter(7, "-")},
                                         RaiseCase{"riegl.mta_settings", stoppedAfter(8, "0")},
                                         RaiseCase{"debug.rxp_parameters", stoppedAfter(9, "earlier")},
                                         RaiseCase{"riegl.exponential_decomposition",
                                                   stoppedAfter(9, "read")}));

TEST(Raise, OfAClosedDatabasePassesThrough) {
  const riegl::rdb::Pointcloud closed{riegl::rdb::Context()};
  Record record = filledRecord();
  EXPECT_THROW(record.getAttributesViaJson(closed), riegl::rdb::Error);
  EXPECT_THAT(state(record), ElementsAreArray(stoppedAfter(0, "0")));
}

} // namespace
