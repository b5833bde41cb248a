// SPDX-License-Identifier: BSD-3-Clause
// Pins that threads transform at the same time without synchronisation; also for the thread sanitizer.
#include "tests/platform/transformation/projection.h"

#include <thread>

namespace {

using namespace projection;

Points block(double longitude) {
  Points points(100000);
  for (std::size_t i = 0; i < points.size(); ++i) {
    points[i] = Point(longitude + 1e-6 * static_cast<double>(i), 48, 300);
  }
  return points;
}

using Threads = AsALoadLeavesIt;

TEST_F(Threads, TransformSideBySideIntoDifferentSystems) {
  const Points eastAlone = inSystem("epsg:32633", block(15));
  const Points westAlone = inSystem("epsg:32611", block(-117));
  Points east, west;
  std::thread first([&] { east = inSystem("epsg:32633", block(15)); });
  std::thread second([&] { west = inSystem("epsg:32611", block(-117)); });
  first.join();
  second.join();
  EXPECT_TRUE(sameBits(east, eastAlone));
  EXPECT_TRUE(sameBits(west, westAlone));
}

TEST_F(Threads, FailWithoutHarmToTheOther) {
  std::string unknown, known;
  std::thread first([&] {
    Points points(1);
    unknown = Proj::transform(degrees, "epsg:999999", points, false);
  });
  std::thread second([&] {
    Points points(1);
    known = Proj::transform(degrees, "epsg:32633", points, false);
  });
  first.join();
  second.join();
  EXPECT_EQ(unknown, "proj_create: crs not found");
  EXPECT_EQ(known, "");
}

} // namespace
