// SPDX-License-Identifier: BSD-3-Clause
// Days of the Gregorian calendar as text, GPS weeks, and the time base of an import.
#include "apps/rdbtool/calendar_date.h"

#include "apps/rdbtool/tool_error.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace rdbtool {

namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;

} // namespace

sys_days weekStart(sys_days day) {
  return day - (std::chrono::weekday(day) - std::chrono::Sunday);
}

std::string isoText(sys_days day) {
  const year_month_day date(day);
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", int(date.year()), unsigned(date.month()),
                unsigned(date.day()));
  return text;
}

sys_days parseIsoDate(const std::string& text) {
  const std::string form = "dddd-dd-dd";
  const bool formed =
      std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char letter, char wanted) {
        return wanted == 'd' ? letter >= '0' && letter <= '9' : letter == wanted;
      });
  if (formed) {
    const year_month_day date(std::chrono::year(std::stoi(text.substr(0, 4))),
                              std::chrono::month(unsigned(std::stoi(text.substr(5, 2)))),
                              std::chrono::day(unsigned(std::stoi(text.substr(8, 2)))));
    if (date.ok()) {
      return date;
    }
  }
  throw wrongUse("date \"" + text + "\": expected a day of the calendar as YYYY-MM-DD");
}

std::string timeBaseText(sys_days epoch, const std::string& system) {
  const nlohmann::ordered_json item = {
      {"epoch", isoText(epoch) + "T00:00:00+00:00"}, {"source", "GNSS"}, {"system", system}};
  return item.dump();
}

sys_days epochForWeekSeconds(double firstStamp, sys_days inWeek) {
  const bool inside = firstStamp >= 0 && firstStamp < weekSeconds;
  return weekStart(inWeek) + std::chrono::days(inside ? static_cast<int>(firstStamp / daySeconds) : 0);
}

} // namespace rdbtool
