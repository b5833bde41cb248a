// SPDX-License-Identifier: BSD-3-Clause
// The day of the week, from the standard library's calendar.
#include "platform/calendar/calendar.h"

#include <chrono>

namespace Ondrel {

int getWeekDay(int year, int month, int day) {
  namespace chrono = std::chrono;
  // The standard month and day hold one byte: a larger number would come back as another date.
  if (month < 1 || month > 12 || day < 1 || day > 31) {
    return 0;
  }
  // 400 years are a whole number of weeks, and the standard year ends at 32767.
  const chrono::year_month_day date{chrono::year{year % 400}, chrono::month{static_cast<unsigned>(month)},
                                    chrono::day{static_cast<unsigned>(day)}};
  return date.ok() ? static_cast<int>(chrono::weekday{chrono::sys_days{date}}.c_encoding()) : 0;
}

} // namespace Ondrel
