// The header that a replaced calendar is known by.
// Partner: tests/replacement/calendar.cpp
#pragma once

namespace Ondrel {
int getWeekDay(int year, int month, int day);
} // namespace Ondrel
