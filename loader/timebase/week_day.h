// SPDX-License-Identifier: BSD-3-Clause
// The time system of a database and the week day of its epoch. The date itself: loader/timebase/date.h
#pragma once

#include <rdb2nimbra/client.h>
#include <rdb2nimbra/export.h>

#include <cstdint>

namespace Riegl {

/// What the rebasing of a time column has to know.
struct TimeSystemInfo {
  bool isUTC = true;        ///< the time stamps are UTC
  std::int32_t weekDay = 0; ///< of the epoch, 0 is Sunday
};

/// Reads the time base of an open database. A database without one counts as UTC with its epoch on day 0; one
/// whose time base is of the wrong form as not UTC, with the week day of the date -1, -1, -1.
///
/// \param metaData  of an open database; not kept
/// \errors  what the client raises, and what `parseDate` raises
/// \threads the thread of the client's objects; writes to the console
RDB2NIMBRA_EXPORT TimeSystemInfo getIsUTCandWeekday(const riegl::rdb::pointcloud::MetaData& metaData);

} // namespace Riegl
