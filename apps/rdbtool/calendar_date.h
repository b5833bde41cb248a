// SPDX-License-Identifier: BSD-3-Clause
// Days of the Gregorian calendar as text, GPS weeks, and the time base of an import.
// docs/rdbtool.md describes how an epoch is chosen.
#pragma once

#include <chrono>
#include <string>

namespace rdbtool {

constexpr double daySeconds = 86400.0;
constexpr double weekSeconds = 604800.0;

/// The first day of the first GPS week, a Sunday.
constexpr std::chrono::sys_days gpsOrigin = std::chrono::year(1980) / std::chrono::January / 6;

/// The Sunday on or before a day.
std::chrono::sys_days weekStart(std::chrono::sys_days day);

/// A day of the years 0 to 9999 as in "2015-10-27".
std::string isoText(std::chrono::sys_days day);

/// Reads a day such as "2015-10-27".
/// \errors ToolError (wrong use) for any other text, and for a day that does not exist
std::chrono::sys_days parseIsoDate(const std::string& text);

/// The text of the metadata item riegl.time_base.
///
/// \param epoch   the day whose day of the week agrees with the time stamps; midnight at zone +00:00
/// \param system  "UTC" or "GPS"
std::string timeBaseText(std::chrono::sys_days epoch, const std::string& system);

/// The epoch for time stamps in seconds of the GPS week: the day of the week of `inWeek` on which `firstStamp`
/// lies. A stamp outside the week, and not-a-number, gives the Sunday.
std::chrono::sys_days epochForWeekSeconds(double firstStamp, std::chrono::sys_days inWeek);

} // namespace rdbtool
