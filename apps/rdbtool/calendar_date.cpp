// SPDX-License-Identifier: BSD-3-Clause
// Dates of the Gregorian calendar, GPS weeks, and the time base of an import.
#include "apps/rdbtool/calendar_date.h"

#include "apps/rdbtool/tool_error.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace rdbtool {

namespace {

std::chrono::year_month_day civil(const CalendarDate& date) {
  return {std::chrono::year(date.year), std::chrono::month(date.month), std::chrono::day(date.day)};
}

} // namespace

std::int64_t dayNumber(const CalendarDate& date) {
  return std::chrono::sys_days(civil(date)).time_since_epoch().count();
}

CalendarDate dateOfDayNumber(std::int64_t number) {
  const std::chrono::year_month_day date{std::chrono::sys_days{std::chrono::days{number}}};
  return {static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
          static_cast<unsigned>(date.day())};
}

int weekDay(const CalendarDate& date) {
  return static_cast<int>(std::chrono::weekday(std::chrono::sys_days(civil(date))).c_encoding());
}

CalendarDate plusDays(const CalendarDate& date, std::int64_t days) {
  return dateOfDayNumber(dayNumber(date) + days);
}

CalendarDate weekStart(const CalendarDate& date) {
  return plusDays(date, -weekDay(date));
}

std::string isoText(const CalendarDate& date) {
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", date.year, date.month, date.day);
  return text;
}

CalendarDate parseIsoDate(const std::string& text) {
  const std::string form = "dddd-dd-dd";
  const bool formed =
      std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char letter, char wanted) {
        return wanted == 'd' ? letter >= '0' && letter <= '9' : letter == wanted;
      });
  if (formed) {
    const CalendarDate date{std::stoi(text.substr(0, 4)), static_cast<unsigned>(std::stoi(text.substr(5, 2))),
                            static_cast<unsigned>(std::stoi(text.substr(8, 2)))};
    if (civil(date).ok()) {
      return date;
    }
  }
  throw wrongUse("date \"" + text + "\": expected a day of the calendar as YYYY-MM-DD");
}

std::string timeBaseText(const CalendarDate& epoch, const std::string& system) {
  const nlohmann::ordered_json item = {
      {"epoch", isoText(epoch) + "T00:00:00+00:00"}, {"source", "GNSS"}, {"system", system}};
  return item.dump();
}

CalendarDate epochForWeekSeconds(double firstStamp, const CalendarDate& inWeek) {
  const bool inside = firstStamp >= 0 && firstStamp < weekSeconds;
  return plusDays(weekStart(inWeek), inside ? static_cast<int>(firstStamp / daySeconds) : 0);
}

} // namespace rdbtool
