// SPDX-License-Identifier: BSD-3-Clause
// What the tests of the transformation share: points, their bits, and the environment that a load leaves.
#pragma once

#include "model/torvel/objects/environment.h"
#include "platform/transformation/transform.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace projection {

using Point = Quillon::PhysicalSpace::point;
using Points = std::vector<Point>;

inline const std::string degrees = "+proj=latlong";

/// PROJ_LIB as a load leaves it: the program's folder, which has no data of PROJ.
class AsALoadLeavesIt : public testing::Test {
 protected:
  void SetUp() override { Torvel::setEnv("PROJ_LIB", Torvel::getExecutableDir(), true); }
  void TearDown() override { Torvel::setEnv("PROJ_LIB", Torvel::getExecutableDir(), true); }
};

/// The points in the system of the code, or a failed test.
inline Points inSystem(const std::string& code, Points points) {
  EXPECT_EQ(Proj::transform(degrees, code, points, false), "");
  return points;
}

inline bool sameBits(const Points& left, const Points& right) {
  return left.size() == right.size() &&
         (left.empty() || std::memcmp(left.data(), right.data(), left.size() * sizeof(Point)) == 0);
}

inline void expectNear(const Point& point, double x, double y, double z, double tolerance) {
  EXPECT_NEAR(point[0], x, tolerance);
  EXPECT_NEAR(point[1], y, tolerance);
  EXPECT_NEAR(point[2], z, tolerance);
}

} // namespace projection
