// The one place that names the header of the calendar; everything else knows `Ondrel::getWeekDay` only.
#pragma once

#ifdef RDB2NIMBRA_CALENDAR_HEADER
#include RDB2NIMBRA_CALENDAR_HEADER
#else
#include "platform/ondrel/calendar.h"
#endif
