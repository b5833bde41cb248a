// SPDX-License-Identifier: BSD-3-Clause
// The date of a database's time base. Its week day: loader/timebase/week_day.h
#pragma once

#include <rdb2nimbra/export.h>

#include <cstdint>
#include <string>

namespace Riegl {

/// The epoch of the time stamps and their time system.
struct TimeBaseDate {
  bool isUTC;         ///< the time system is UTC or isn't named
  std::int32_t day;   ///< of the month, as written
  std::int32_t month; ///< as written, 1 to 12
  std::int32_t year;  ///< as written
};

/// Reads the metadata item `riegl.time_base`, a JSON object with the keys `epoch` (RFC 3339) and `system`.
///
/// \param timeBase  JSON text in UTF-8
/// \returns what the text says, with no check of ranges; for a text of the wrong form `isUTC` false and the
///          three numbers -1, with a line on the console. An epoch with a negative zone offset is such a
///          form.
/// \errors  std::invalid_argument or std::out_of_range "stoi" for a year, month or day that is no number
/// \threads any; writes to the console
RDB2NIMBRA_EXPORT TimeBaseDate parseDate(const std::string& timeBase);

} // namespace Riegl
