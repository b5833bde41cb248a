// SPDX-License-Identifier: BSD-3-Clause
// The header that a replaced calendar is known by.
#pragma once

namespace Ondrel {
int getWeekDay(int year, int month, int day);
} // namespace Ondrel
