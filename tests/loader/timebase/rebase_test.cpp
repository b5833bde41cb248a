// SPDX-License-Identifier: BSD-3-Clause
// The shift of a time column: the decision table, the failure texts, and which columns stay unchanged.
#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/support/chunk_with.h"
#include "tests/support/console_lines.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>

namespace {

using Stamps = std::vector<double>;
using support::chunkWith;
using ChunkPointer = Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>;

struct Case {
  std::string name;
  Stamps before;
  int weekDay;
  bool isUTC;
  Stamps after;
  std::string error;

  friend void PrintTo(const Case& test, std::ostream* stream) { *stream << test.name; }
};

class TimeColumn : public testing::TestWithParam<Case> {};

TEST_P(TimeColumn, IsShiftedOrRefused) {
  const support::ConsoleLines console;
  const auto chunk = chunkWith(GetParam().before);
  std::string error;
  Riegl::modifyGPSTime(error, GetParam().weekDay, chunk, "GPSTime", GetParam().isUTC);
  EXPECT_EQ(error, GetParam().error);
  EXPECT_EQ(chunk->values(), GetParam().after);
  EXPECT_TRUE(console.lines().empty());
}

const std::string twoDays = "baseRDB2Nimbra:: Input file spans two days! Not implemented so far.";

std::string mismatch(const std::string& weekDay, const std::string& first) {
  return "baseRDB2Nimbra:: WeekDay " + weekDay + " does not match GPSTime: " + first;
}

INSTANTIATE_TEST_SUITE_P(
    OfTheTable, TimeColumn,
    testing::Values(
        Case{"Day0Weekday0Utc", {10, 20}, 0, true, {10, 20}, ""},
        Case{"Day0Weekday0Gps", {10, 15, 20}, 0, false, {-8, -3, 2}, ""},
        Case{"Day0Weekday3Utc", {10, 20}, 3, true, {259210, 259220}, ""},
        Case{"Day0Weekday3Gps", {10, 20}, 3, false, {259192, 259202}, ""},
        Case{"Day3Weekday3Gps", {259210, 259220}, 3, false, {259210, 259220}, ""},
        Case{"Day3Weekday3Utc", {259210, 259220}, 3, true, {259210, 259220}, ""},
        Case{"Day3Weekday4", {259210, 259220}, 4, true, {259210, 259220}, mismatch("4", "259210")},
        Case{"Day3Weekday4Gps",
             {259210.25, 259220},
             4,
             false,
             {259210.25, 259220},
             mismatch("4", "259210.25")},
        Case{"Day1WithoutTimeBase", {86400, 86400}, 0, true, {86400, 86400}, mismatch("0", "86400")},
        Case{"NegativeWeekday", {259210, 259220}, -1, true, {259210, 259220}, mismatch("-1", "259210")},
        Case{"TwoDays", {86390, 86410}, 0, true, {86390, 86410}, twoDays},
        Case{"TwoDaysWhateverTheWeekday", {86390, 86410}, 1, false, {86390, 86410}, twoDays},
        Case{"ZeroIsNotTheDayBefore", {-1, 1}, 0, true, {-1, 1}, twoDays},
        Case{"Descending", {20, 10}, 3, true, {259220, 259210}, ""},
        Case{"OnlyTheEndsDecide", {10, 900000, 20}, 1, true, {86410, 986400, 86420}, ""},
        Case{"Exactly86400IsDayOne", {86400, 86400}, 1, true, {86400, 86400}, ""},
        Case{"JustBelow86400IsDayZero", {86399.999, 86399.999}, 0, true, {86399.999, 86399.999}, ""},
        Case{"NegativeDay", {-20, -10}, 2, true, {172780, 172790}, ""},
        Case{"StartOfTheDayBefore", {-86400, -1}, 1, true, {0, 86399}, ""},
        Case{"ShiftBeyondAnInt", {10, 20}, 30000, true, {2592000010, 2592000020}, ""},
        Case{"TheLastDayOfAll",
             {185542587100900, 185542587100900},
             3,
             true,
             {185542587100900, 185542587100900},
             mismatch("3", "185542587100900")},
        Case{"OneAddendForWeekdayAndLeapSeconds", {2950.1, 2950.1}, 3, false, {262132.1, 262132.1}, ""},
        Case{"OneValue", {5}, 1, true, {86405}, ""}),
    [](const auto& tested) { return tested.param.name; });

TEST(TimeColumn, OfHugeOrMissingStampsIsTakenAsOneBeforeDayOne) {
  const double infinite = std::numeric_limits<double>::infinity();
  for (const double stamp : {1e300, -1e300, 1e15, -1e15, infinite, -infinite, std::nan("")}) {
    const auto chunk = chunkWith(Stamps{stamp, 10, stamp});
    std::string error;
    Riegl::modifyGPSTime(error, 2, chunk, "GPSTime", true);
    EXPECT_EQ(error, "") << stamp;
    EXPECT_EQ(chunk->values()[1], 172810) << stamp;
  }
}

TEST(TimeColumn, WithoutValuesIsLeftAlone) {
  std::string error;
  Riegl::modifyGPSTime(error, 2, chunkWith(Stamps{}), "GPSTime", true);
  EXPECT_EQ(error, "");
}

TEST(TimeColumn, IsLeftAloneAfterAnEarlierFailure) {
  const auto chunk = chunkWith(Stamps{10, 20});
  std::string error = "earlier";
  Riegl::modifyGPSTime(error, 3, chunk, "GPSTime", false);
  Riegl::modifyGPSTime(error, 3, ChunkPointer(), "GPSTime", false);
  EXPECT_EQ(error, "earlier");
  EXPECT_EQ(chunk->values(), (Stamps{10, 20}));
}

TEST(TimeColumn, IsKnownByItsNameAlone) {
  for (const char* name : {"Roll", "GPSTime ", "gpstime", "GPSTim", "ShotTimeStamp", "Timestamp_pof", ""}) {
    const auto chunk = chunkWith(Stamps{10, 20});
    std::string error;
    Riegl::modifyGPSTime(error, 3, chunk, name, false);
    EXPECT_EQ(chunk->values(), (Stamps{10, 20})) << name;
    Riegl::modifyGPSTime(error, 3, chunkWith(std::vector<float>{1}), name, false);
    EXPECT_EQ(error, "") << name;
  }
}

TEST(TimeColumn, OfAnotherTypeIsAFailure) {
  const std::string text = "baseRDB2Nimbra:: Have not time-field with type double.";
  std::string error;
  Riegl::modifyGPSTime(error, 3, chunkWith(std::vector<float>{1}), "GPSTime", false);
  EXPECT_EQ(error, text);
  std::string errorOfNothing;
  Riegl::modifyGPSTime(errorOfNothing, 3, ChunkPointer(), "GPSTime", false);
  EXPECT_EQ(errorOfNothing, text);
}

} // namespace
