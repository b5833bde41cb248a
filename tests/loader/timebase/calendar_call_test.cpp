// SPDX-License-Identifier: BSD-3-Clause
// The date that the calendar is asked for, and that its result is used for any date.
#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/scripted/rdb.h"
#include "tests/scripted/recorded_platform.h"
#include "tests/support/console_lines.h"

#include <gtest/gtest.h>

namespace {

Riegl::TimeSystemInfo systemOf(const std::string& timeBase) {
  const support::ConsoleLines console;
  scripted::newScript().metadata["riegl.time_base"] = timeBase;
  return Riegl::getIsUTCandWeekday(riegl::rdb::pointcloud::MetaData());
}

std::vector<std::string> askedFor() {
  return scripted::script().callsThatBegin("getWeekDay");
}

TEST(Calendar, IsAskedForYearMonthAndDay) {
  recorded::weekDay() = 41;
  EXPECT_EQ(systemOf(R"({"epoch":"2015-10-27","system":"UTC"})").weekDay, 41);
  EXPECT_EQ(askedFor(), std::vector<std::string>{"getWeekDay(2015,10,27)"});
}

TEST(Calendar, IsAskedForTheCorrectedTestDate) {
  systemOf(R"({"epoch":"2019-02-08","system":"UTC"})");
  EXPECT_EQ(askedFor(), std::vector<std::string>{"getWeekDay(2019,2,9)"});
}

TEST(Calendar, IsAskedForATimeBaseOfTheWrongFormToo) {
  recorded::weekDay() = 41;
  const Riegl::TimeSystemInfo system = systemOf("no json");
  EXPECT_EQ(askedFor(), std::vector<std::string>{"getWeekDay(-1,-1,-1)"});
  EXPECT_EQ(system.weekDay, 41);
  EXPECT_FALSE(system.isUTC);
}

} // namespace
