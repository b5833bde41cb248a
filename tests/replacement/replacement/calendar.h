// SPDX-License-Identifier: BSD-3-Clause
// The header of the replacement calendar.
#pragma once

namespace Ondrel {
int getWeekDay(int year, int month, int day);
} // namespace Ondrel
