// SPDX-License-Identifier: BSD-3-Clause
// The time system of a database and the day of the week of its epoch, from its metadata.
#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/scripted/rdb.h"
#include "tests/support/console_lines.h"

#include <gtest/gtest.h>
#include <ostream>

namespace {

struct Case {
  std::string name;
  std::string timeBase;
  bool isUTC;
  int weekDay;
  std::size_t consoleLines;

  friend void PrintTo(const Case& test, std::ostream* stream) { *stream << test.name; }
};

class TimeSystem : public testing::TestWithParam<Case> {};

TEST_P(TimeSystem, IsThatOfTheDatabasesEpoch) {
  scripted::newScript().metadata["riegl.time_base"] = GetParam().timeBase;
  const support::ConsoleLines console;
  const Riegl::TimeSystemInfo system = Riegl::getIsUTCandWeekday(riegl::rdb::pointcloud::MetaData());
  EXPECT_EQ(system.isUTC, GetParam().isUTC);
  EXPECT_EQ(system.weekDay, GetParam().weekDay);
  EXPECT_EQ(console.lines().size(), GetParam().consoleLines);
}

INSTANTIATE_TEST_SUITE_P(
    OfEveryKind, TimeSystem,
    testing::Values(Case{"UtcTuesday", R"({"epoch":"2015-10-27","system":"UTC"})", true, 2, 0},
                    Case{"GpsSunday", R"({"epoch":"2015-10-25","system":"GPS"})", false, 0, 0},
                    Case{"NoSystemSaturday", R"({"epoch":"2015-10-31"})", true, 6, 2},
                    Case{"TestDateIsTheSaturday", R"({"epoch":"2019-02-08","system":"UTC"})", true, 6, 2},
                    Case{"RefusedText", "no json", false, 0, 1}),
    [](const auto& tested) { return tested.param.name; });

TEST(TimeSystem, IsUtcOnSundayWithoutATimeBase) {
  scripted::newScript();
  const support::ConsoleLines console;
  const Riegl::TimeSystemInfo system = Riegl::getIsUTCandWeekday(riegl::rdb::pointcloud::MetaData());
  EXPECT_TRUE(system.isUTC);
  EXPECT_EQ(system.weekDay, 0);
  EXPECT_TRUE(console.lines().empty());
  EXPECT_EQ(scripted::script().calls, std::vector<std::string>{"MetaData::exists(riegl.time_base)"});
}

TEST(TimeSystem, AsksForTheTimeBaseWithAnEmptyFallback) {
  scripted::newScript().metadata["riegl.time_base"] = R"({"epoch":"2015-10-27","system":"UTC"})";
  Riegl::getIsUTCandWeekday(riegl::rdb::pointcloud::MetaData());
  EXPECT_EQ(scripted::script().calls, (std::vector<std::string>{"MetaData::exists(riegl.time_base)",
                                                                "MetaData::get(riegl.time_base,)"}));
}

TEST(TimeSystem, HoldsTheFlagThenTheWeekDay) {
  const auto [isUTC, weekDay] = Riegl::TimeSystemInfo{false, 5};
  EXPECT_FALSE(isUTC);
  EXPECT_EQ(weekDay, 5);
}

TEST(TimeSystem, PassesOnTheExceptionOfANumber) {
  scripted::newScript().metadata["riegl.time_base"] = R"({"epoch":"x-10-27"})";
  EXPECT_THROW(Riegl::getIsUTCandWeekday(riegl::rdb::pointcloud::MetaData()), std::invalid_argument);
}

TEST(TimeSystem, PassesOnTheClientsError) {
  scripted::newScript().raiseAt = 1;
  EXPECT_THROW(Riegl::getIsUTCandWeekday(riegl::rdb::pointcloud::MetaData()), riegl::rdb::Error);
}

} // namespace
