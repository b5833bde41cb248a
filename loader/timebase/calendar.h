// SPDX-License-Identifier: BSD-3-Clause
// The one file that names the header of the calendar; all other files use `Ondrel::getWeekDay` only.
#pragma once

#ifdef RDB2NIMBRA_CALENDAR_HEADER
#include RDB2NIMBRA_CALENDAR_HEADER
#else
#include "platform/calendar/calendar.h"
#endif
