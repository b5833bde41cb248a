// SPDX-License-Identifier: BSD-3-Clause
// The calendar: the day of the week of a date.
#pragma once

#include "model/torvel/core/api.h"

namespace Ondrel {

/// The day of the week in the Gregorian calendar, counted on without a break into the years before its
/// introduction; year 0 is the year before year 1.
///
/// \return 0 for Sunday to 6 for Saturday; a date that does not exist gives 0
/// \errors none, for any numbers \threads safe
TORVEL_API int getWeekDay(int year, int month, int day);

} // namespace Ondrel
