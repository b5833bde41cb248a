// SPDX-License-Identifier: BSD-3-Clause
// Days as text, weeks, and the epoch of an import.
#include "apps/rdbtool/calendar_date.h"

#include "apps/rdbtool/tool_error.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;
using rdbtool::isoText;
using rdbtool::parseIsoDate;
using rdbtool::weekStart;

TEST(CalendarDate, WeeksBeginOnSunday) {
  EXPECT_EQ(isoText(weekStart(1980y / 1 / 6)), "1980-01-06");
  EXPECT_EQ(isoText(weekStart(2019y / 2 / 8)), "2019-02-03");
  EXPECT_EQ(isoText(weekStart(2024y / 2 / 29)), "2024-02-25");
  EXPECT_EQ(isoText(weekStart(2024y / 3 / 2)), "2024-02-25");
  EXPECT_EQ(isoText(weekStart(2024y / 3 / 3)), "2024-03-03");
}

TEST(CalendarDate, GpsWeeksBeginWithTheirOrigin) {
  EXPECT_EQ(isoText(rdbtool::gpsOrigin), "1980-01-06");
}

TEST(CalendarDate, EpochOfWeekSecondsLiesOnTheStampsDay) {
  const std::chrono::sys_days wednesday = 2015y / 10 / 28;
  EXPECT_EQ(isoText(rdbtool::epochForWeekSeconds(0, wednesday)), "2015-10-25");
  EXPECT_EQ(isoText(rdbtool::epochForWeekSeconds(86399.999, wednesday)), "2015-10-25");
  EXPECT_EQ(isoText(rdbtool::epochForWeekSeconds(86400, wednesday)), "2015-10-26");
  EXPECT_EQ(isoText(rdbtool::epochForWeekSeconds(604799, wednesday)), "2015-10-31");
  EXPECT_EQ(isoText(rdbtool::epochForWeekSeconds(-1, wednesday)), "2015-10-25");
}

TEST(CalendarDate, OnlyDaysThatExistAreRead) {
  EXPECT_EQ(isoText(parseIsoDate("2024-02-29")), "2024-02-29");
  for (const char* text : {"2023-02-29", "2024-13-01", "2024-1-1", "2024-01-01T00", "", "yesterday"}) {
    EXPECT_THROW(parseIsoDate(text), rdbtool::ToolError) << text;
  }
}

} // namespace
