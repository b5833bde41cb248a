// SPDX-License-Identifier: BSD-3-Clause
// Dates of the Gregorian calendar, GPS weeks, and the time base of an import.
// Docs/rdbtool.md tells how an epoch is chosen.
#pragma once

#include <cstdint>
#include <string>

namespace rdbtool {

constexpr double daySeconds = 86400.0;
constexpr double weekSeconds = 604800.0;

/// A day of the proleptic Gregorian calendar.
struct CalendarDate {
  int year = 1980;
  unsigned month = 1;
  unsigned day = 6;
};

/// Days since 1970-01-01; negative before.
std::int64_t dayNumber(const CalendarDate& date);
/// The date of a number of days since 1970-01-01.
CalendarDate dateOfDayNumber(std::int64_t number);

/// The day of the week; 0 is Sunday.
int weekDay(const CalendarDate& date);
/// The Sunday on or before the date.
CalendarDate weekStart(const CalendarDate& date);
/// The date so many days later; earlier for a number below 0.
CalendarDate plusDays(const CalendarDate& date, std::int64_t days);

/// The date as in "2015-10-27".
std::string isoText(const CalendarDate& date);
/// Reads "2015-10-27"; any other text, and a date that does not exist, is ToolError (wrong use).
CalendarDate parseIsoDate(const std::string& text);

/// The text of the metadata item riegl.time_base.
///
/// \param epoch   the day whose week day agrees with the stamps; midnight at zone +00:00
/// \param system  "UTC" or "GPS"
std::string timeBaseText(const CalendarDate& epoch, const std::string& system);

/// The epoch for stamps in seconds of the GPS week: the day of the week of `inWeek` on which `firstStamp`
/// lies. A stamp outside the week, or one that is no number, gives the Sunday.
CalendarDate epochForWeekSeconds(double firstStamp, const CalendarDate& inWeek);

} // namespace rdbtool
