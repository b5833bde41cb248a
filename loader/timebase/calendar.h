// SPDX-License-Identifier: BSD-3-Clause
// The one place that names the header of the calendar; everything else knows `Ondrel::getWeekDay` only.
#pragma once

#ifdef RDB2NIMBRA_CALENDAR_HEADER
#include RDB2NIMBRA_CALENDAR_HEADER
#else
#include "platform/calendar/calendar.h"
#endif
