// SPDX-License-Identifier: BSD-3-Clause
// Days of the week of the Gregorian calendar.
#include "quarry/calendar.h"

int Ondrel::getWeekDay(int year, int month, int day) {
  // Months count from March, so that the leap day is the last of a year; 64 bits hold every int.
  const long long months = 12LL * year + (month - 3LL);
  const auto floorOf = [](long long value, long long by) { return value / by - (value % by < 0 ? 1 : 0); };
  const long long years = floorOf(months, 12);
  const long long inYear = months - 12 * years;
  const long long days = 365 * years + floorOf(years, 4) - floorOf(years, 100) + floorOf(years, 400) +
                         (153 * inYear + 2) / 5 + day;
  return static_cast<int>(((days + 2) % 7 + 7) % 7);
}
