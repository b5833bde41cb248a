// SPDX-License-Identifier: BSD-3-Clause
// A calendar in which every day is a Wednesday.
#include "tests/replacement/replacement/calendar.h"

int Ondrel::getWeekDay(int, int, int) {
  return 3;
}
