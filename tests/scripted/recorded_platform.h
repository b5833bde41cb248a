// SPDX-License-Identifier: BSD-3-Clause
// A transformation and a calendar that record their arguments in the scripted client's record of calls.
#pragma once

#include "arrays/quillon/physical_space.h"

#include <string>
#include <vector>

namespace Proj {
std::string transform(const std::string& from, const std::string& to,
                      std::vector<Quillon::PhysicalSpace::point>& points, bool reserved);
} // namespace Proj

namespace Ondrel {
int getWeekDay(int year, int month, int day);
} // namespace Ondrel

namespace recorded {

/// What the transformation answers, and the first points that it was given last.
struct Transformation {
  std::string answer;
  int answerFromCall = 1; ///< the calls before it succeed
  int calls = 0;
  std::vector<Quillon::PhysicalSpace::point> firstPoints;
};

Transformation& transformation();

/// What the calendar answers to every date, 0 at first.
int& weekDay();

} // namespace recorded
