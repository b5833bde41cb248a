// SPDX-License-Identifier: BSD-3-Clause
// Pins the days of the week, and that any numbers are accepted.
#include "platform/calendar/calendar.h"

#include <chrono>
#include <climits>
#include <gtest/gtest.h>
#include <ostream>

namespace {

using Ondrel::getWeekDay;

int standardWeekDay(std::chrono::year_month_day date) {
  return static_cast<int>(std::chrono::weekday(std::chrono::sys_days(date)).c_encoding());
}

struct Day {
  int year, month, day, weekDay;

  friend void PrintTo(const Day& test, std::ostream* stream) {
    *stream << test.year << '-' << test.month << '-' << test.day;
  }
};

class KnownDay : public testing::TestWithParam<Day> {};

TEST_P(KnownDay, HasItsWeekDay) {
  const Day& known = GetParam();
  EXPECT_EQ(getWeekDay(known.year, known.month, known.day), known.weekDay)
      << known.year << '-' << known.month << '-' << known.day;
}

INSTANTIATE_TEST_SUITE_P(Calendar, KnownDay,
                         testing::Values(Day{1980, 1, 6, 0},   // first day of GPS time, a Sunday
                                         Day{1970, 1, 1, 4},   //
                                         Day{2000, 2, 29, 2},  // leap day of a year that 400 divides
                                         Day{2024, 2, 29, 4},  //
                                         Day{2023, 12, 30, 6}, //
                                         Day{1582, 10, 15, 5}, // first day of the calendar
                                         Day{1582, 10, 14, 4}, // before the introduction
                                         Day{1, 1, 1, 1},      //
                                         Day{0, 2, 29, 2},     //
                                         Day{-1, 12, 31, 5}));

class MissingDay : public testing::TestWithParam<Day> {};

TEST_P(MissingDay, IsSunday) {
  const Day& missing = GetParam();
  EXPECT_EQ(getWeekDay(missing.year, missing.month, missing.day), 0)
      << missing.year << '-' << missing.month << '-' << missing.day;
}

INSTANTIATE_TEST_SUITE_P(Calendar, MissingDay,
                         testing::Values(Day{-1, -1, -1, 0}, Day{2023, 2, 29, 0}, Day{1900, 2, 29, 0},
                                         Day{2024, 2, 30, 0}, Day{2024, 4, 31, 0}, Day{2024, 0, 3, 0},
                                         Day{2024, 13, 2, 0}, Day{2024, 1, 0, 0}, Day{2024, 1, 32, 0},
                                         Day{2024, 1, -5, 0}, Day{2024, 257, 1, 0}, Day{2024, 1, 257, 0},
                                         Day{2024, -255, 1, 0}, Day{2024, 1, -255, 0},
                                         Day{INT_MAX, INT_MAX, INT_MAX, 0}, Day{INT_MIN, INT_MIN, INT_MIN, 0},
                                         Day{2024, 1, INT_MAX, 0}));

TEST(Calendar, AgreesWithTheStandardLibraryOnEveryDayOfNineCenturies) {
  using namespace std::chrono;
  for (sys_days day = sys_days(year(1600) / 1 / 1); day < sys_days(year(2500) / 1 / 1); day += days(1)) {
    const year_month_day date(day);
    ASSERT_EQ(getWeekDay(int(date.year()), int(unsigned(date.month())), int(unsigned(date.day()))),
              standardWeekDay(date))
        << int(date.year()) << '-' << unsigned(date.month()) << '-' << unsigned(date.day());
  }
}

TEST(Calendar, RepeatsAfterFourHundredYears) {
  for (int year = -800; year < 800; ++year) {
    ASSERT_EQ(getWeekDay(year, 3, 1), getWeekDay(year + 400, 3, 1)) << year;
  }
}

TEST(Calendar, CountsAtBothEndsOfTheIntegers) {
  EXPECT_EQ(getWeekDay(INT_MAX, 12, 31), getWeekDay(INT_MAX % 400, 12, 31));
  EXPECT_EQ(getWeekDay(INT_MIN, 1, 1), getWeekDay(INT_MIN % 400 + 400, 1, 1));
}

} // namespace
