// SPDX-License-Identifier: BSD-3-Clause
// The calendar: the day of the week of a date.
#pragma once

#include "model/torvel/core/api.h"

namespace Ondrel {

/// Day of the week of a date in the Gregorian calendar, which is extended to the years before its
/// introduction.
///
/// \param year  astronomical: year 0 is the year before year 1, any number is valid
/// \param month,day  from 1
/// \return 0 for Sunday to 6 for Saturday; 0 for a date that does not exist
/// \errors  none
/// \threads safe
TORVEL_API int getWeekDay(int year, int month, int day);

} // namespace Ondrel
