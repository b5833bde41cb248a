// SPDX-License-Identifier: BSD-3-Clause
// Pins that large batches and runs of equal points give the bits of PROJ's own array call on one thread.
#include "tests/platform/transformation/projection.h"
#include "tests/support/proj_database.h"

#include <limits>
#include <proj.h>
#include <random>

namespace {

using namespace projection;

/// PROJ's array call over the whole vector.
Points oneArrayCall(const std::string& code, Points points) {
  PJ_CONTEXT* const context = proj_context_create();
  const std::string folder = support::installedProjDatabase().parent_path().string();
  const char* const folders[] = {folder.c_str()};
  proj_context_set_search_paths(context, 1, folders);
  PJ* const found = proj_create_crs_to_crs(context, degrees.c_str(), code.c_str(), nullptr);
  PJ* const steps = proj_normalize_for_visualization(context, found);
  double* const first = points[0].begin();
  const std::size_t count = points.size();
  proj_trans_generic(steps, PJ_FWD, first, sizeof(Point), count, first + 1, sizeof(Point), count, first + 2,
                     sizeof(Point), count, nullptr, 0, 0);
  proj_destroy(steps);
  proj_destroy(found);
  proj_context_destroy(context);
  return points;
}

Points scatteredPoints(std::size_t count) {
  std::mt19937_64 seeded(7);
  std::uniform_real_distribution<double> longitude(-180, 180), latitude(-90, 90), height(-100, 9000);
  Points points(count);
  for (Point& point : points) {
    point = Point(longitude(seeded), latitude(seeded), height(seeded));
  }
  return points;
}

/// Runs of every length from 1 to 700 and one that is longer than a thread's piece, between single points.
Points pointsInRuns() {
  const Points singles = scatteredPoints(2000);
  Points points;
  for (std::size_t i = 0; i < singles.size(); ++i) {
    points.insert(points.end(), i % 3 == 0 ? 1 + i % 700 : 1, singles[i]);
  }
  points.insert(points.end(), 100000, singles[0]);
  points.push_back(singles[1]);
  return points;
}

class Batch : public AsALoadLeavesIt, public testing::WithParamInterface<const char*> {
 protected:
  static void expectBitsOfOneCall(const Points& points) {
    EXPECT_TRUE(sameBits(inSystem(GetParam(), points), oneArrayCall(GetParam(), points)));
  }
};

TEST_P(Batch, OfScatteredPointsHasTheBitsOfOneCall) {
  expectBitsOfOneCall(scatteredPoints(300001));
}

TEST_P(Batch, OfRunsHasTheBitsOfOneCall) {
  expectBitsOfOneCall(pointsInRuns());
}

TEST_P(Batch, OfEverySmallSizeHasTheBitsOfOneCall) {
  for (std::size_t count = 1; count < 20; ++count) {
    Points points = scatteredPoints(count);
    points.back() = points.front();
    points.push_back(points.front());
    expectBitsOfOneCall(points);
  }
}

TEST_P(Batch, AroundTheSizeOfAPieceHasTheBitsOfOneCall) {
  for (const std::size_t count : {16383U, 16384U, 16385U, 65535U, 65536U, 65537U}) {
    expectBitsOfOneCall(scatteredPoints(count));
    expectBitsOfOneCall(Points(count, Point(16, 48, 300)));
  }
}

TEST_P(Batch, DistinguishesZeroFromMinusZeroAndRepeatsNotANumber) {
  const double none = std::numeric_limits<double>::quiet_NaN();
  Points points(70000, Point(0.0, 0.0, 0.0));
  std::fill_n(points.begin() + 300, 1000, Point(-0.0, 0.0, -0.0));
  std::fill_n(points.begin() + 40000, 1000, Point(none, none, none));
  expectBitsOfOneCall(points);
}

INSTANTIATE_TEST_SUITE_P(Transformation, Batch,
                         // The last one chooses among several operations, point by point.
                         testing::Values("epsg:32633", "epsg:4978", "epsg:4326", "epsg:31468"),
                         [](const auto& row) { return std::string(row.param).substr(5); });

} // namespace
