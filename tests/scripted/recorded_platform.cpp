// SPDX-License-Identifier: BSD-3-Clause
// The record of the calls to transformation and calendar, and their answers.
#include "tests/scripted/recorded_platform.h"

#include "tests/scripted/script.h"

namespace Proj {

std::string transform(const std::string& from, const std::string& to,
                      std::vector<Quillon::PhysicalSpace::point>& points, bool reserved) {
  recorded::Transformation& transformation = recorded::transformation();
  scripted::script().calls.push_back("transform(" + from + "," + to + "," + std::to_string(points.size()) +
                                     "," + (reserved ? "true" : "false") + ")");
  transformation.firstPoints.assign(points.begin(), points.begin() + 2);
  points[0][0] += 1000;
  return ++transformation.calls < transformation.answerFromCall ? "" : transformation.answer;
}

} // namespace Proj

namespace Ondrel {

int getWeekDay(int year, int month, int day) {
  scripted::script().calls.push_back("getWeekDay(" + std::to_string(year) + "," + std::to_string(month) +
                                     "," + std::to_string(day) + ")");
  return recorded::weekDay();
}

} // namespace Ondrel

namespace recorded {

Transformation& transformation() {
  static Transformation only;
  return only;
}

int& weekDay() {
  static int only = 0;
  return only;
}

} // namespace recorded
