// SPDX-License-Identifier: BSD-3-Clause
// Dates, week days and the time base of an import.
#include "apps/rdbtool/calendar_date.h"

#include "apps/rdbtool/tool_error.h"

#include <gtest/gtest.h>

namespace {

using rdbtool::CalendarDate;
using rdbtool::parseIsoDate;

TEST(CalendarDate, WeekDaysCountFromSunday) {
  EXPECT_EQ(rdbtool::weekDay({1980, 1, 6}), 0);
  EXPECT_EQ(rdbtool::weekDay({2019, 2, 8}), 5);
  EXPECT_EQ(rdbtool::weekDay({2024, 2, 29}), 4);
}

TEST(CalendarDate, WeeksBeginOnSunday) {
  EXPECT_EQ(rdbtool::isoText(rdbtool::weekStart({2024, 3, 2})), "2024-02-25");
  EXPECT_EQ(rdbtool::isoText(rdbtool::weekStart({2024, 3, 3})), "2024-03-03");
}

TEST(CalendarDate, EpochOfWeekSecondsLiesOnTheStampsDay) {
  const CalendarDate wednesday{2015, 10, 28};
  EXPECT_EQ(rdbtool::isoText(rdbtool::epochForWeekSeconds(0, wednesday)), "2015-10-25");
  EXPECT_EQ(rdbtool::isoText(rdbtool::epochForWeekSeconds(86399.999, wednesday)), "2015-10-25");
  EXPECT_EQ(rdbtool::isoText(rdbtool::epochForWeekSeconds(86400, wednesday)), "2015-10-26");
  EXPECT_EQ(rdbtool::isoText(rdbtool::epochForWeekSeconds(604799, wednesday)), "2015-10-31");
  EXPECT_EQ(rdbtool::isoText(rdbtool::epochForWeekSeconds(-1, wednesday)), "2015-10-25");
}

TEST(CalendarDate, OnlyDaysThatExistAreRead) {
  EXPECT_EQ(rdbtool::isoText(parseIsoDate("2024-02-29")), "2024-02-29");
  for (const char* text : {"2023-02-29", "2024-13-01", "2024-1-1", "2024-01-01T00", "", "yesterday"}) {
    EXPECT_THROW(parseIsoDate(text), rdbtool::ToolError) << text;
  }
}

} // namespace
