// SPDX-License-Identifier: BSD-3-Clause
// The day of the week, from the four-hundred-year cycle of the Gregorian calendar.
#include "platform/calendar/calendar.h"

namespace Ondrel {

namespace {

bool isLeapYear(int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int daysInMonth(int year, int month) {
  constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && isLeapYear(year) ? 29 : days[month - 1];
}

} // namespace

int getWeekDay(int year, int month, int day) {
  if (month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month)) {
    return 0;
  }
  // 400 years are 146097 days, a whole number of weeks; what is left of any year can't overflow below.
  const int yearOfCycle = (year % 400 + 400) % 400;
  const int yearsBefore = yearOfCycle + 399; // 1 January of the cycle's year 0 follows 400 whole years
  int days = yearsBefore * 365 + yearsBefore / 4 - yearsBefore / 100 + yearsBefore / 400;
  for (int earlier = 1; earlier < month; ++earlier) {
    days += daysInMonth(year, earlier);
  }
  return (days + day) % 7; // day 1 of year 1 is a Monday
}

} // namespace Ondrel
