// SPDX-License-Identifier: BSD-3-Clause
// Days of the week.
#pragma once

namespace Ondrel {

/// 0 is Sunday. A date that does not exist has some day, too.
int getWeekDay(int year, int month, int day);

} // namespace Ondrel
