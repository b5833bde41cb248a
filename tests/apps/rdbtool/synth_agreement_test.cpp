// SPDX-License-Identifier: BSD-3-Clause
// Scan, shots and trajectory made from one seed describe the same flight.
#include "tests/apps/rdbtool/database_rows.h"
#include "tests/apps/rdbtool/tool_run.h"
#include "tests/support/temp_dir.h"

#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <proj.h>

namespace {

using support::DatabaseRows;

/// One flight in three files, slow enough that a few thousand shots take seconds.
class Flight : public testing::Test {
 protected:
  static void make(const support::TempDir& folder, const char* kind, std::vector<std::string> more) {
    more.insert(more.begin(), {"synth", kind, "--seed", "31", "-o", folder.path(kind)});
    const support::Run run = support::runTool(more);
    ASSERT_EQ(run.status, 0) << run.err;
  }
  static void SetUpTestSuite() {
    const support::TempDir folder;
    make(folder, "scan", {"--records", "6000", "--pulse-rate", "2000"});
    make(folder, "shots", {"--records", "6000", "--pulse-rate", "2000"});
    make(folder, "trajectory", {"--records", "800"});
    keep(folder);
  }
  static void keep(const support::TempDir& folder) {
    const DatabaseRows scan(folder.path("scan")), shots(folder.path("shots")),
        path(folder.path("trajectory"));
    place = scan.column("riegl.xyz");
    scannerPlace = scan.column("riegl.xyz_socs");
    stamp = scan.column("riegl.timestamp");
    count = scan.column("riegl.target_count");
    range = scan.column("riegl.raw_range");
    ticks = shots.wholeNumbers("riegl.shot_timestamp_hr");
    origin = shots.column("riegl.shot_origin");
    direction = shots.column("riegl.shot_direction");
    echoFirst = shots.wholeNumbers("riegl.echo_first");
    echoCount = shots.wholeNumbers("riegl.echo_count");
    pathStamp = path.column("riegl.pof_timestamp");
    for (const char* name : {"longitude", "latitude", "height", "roll", "pitch", "yaw", "path_length"}) {
      pose.push_back(path.column(std::string("riegl.pof_") + name));
    }
  }

  static inline std::vector<double> place, scannerPlace, stamp, count, range, origin, direction, pathStamp;
  static inline std::vector<std::uint64_t> ticks, echoFirst, echoCount;
  static inline std::vector<std::vector<double>> pose;
};

TEST_F(Flight, ShotsPointAtTheirEchoes) {
  for (std::size_t shot = 0; echoFirst[shot] + echoCount[shot] <= stamp.size() && shot < ticks.size();
       ++shot) {
    const std::size_t echo = echoFirst[shot];
    ASSERT_EQ(stamp[echo], static_cast<double>(ticks[shot]) * 4e-12) << shot;
    ASSERT_EQ(count[echo], static_cast<double>(echoCount[shot])) << shot;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double along = origin[3 * shot + axis] + direction[3 * shot + axis] * range[echo];
      ASSERT_NEAR(place[3 * echo + axis], along, 0.4) << shot; // the grid's scale is ignored here
    }
  }
}

TEST_F(Flight, TheTrajectoryCoversTheScan) {
  EXPECT_EQ(pathStamp.front(), stamp.front());
  EXPECT_GT(pathStamp.back(), stamp.back());
}

/// East, north, up of the trajectory record of a time, by PROJ; the times coincide.
std::array<double, 3> projected(double longitude, double latitude, double height) {
  static const std::unique_ptr<PJ, PJ* (*)(PJ*)> projection(
      proj_create(nullptr, "+proj=utm +zone=33 +ellps=WGS84"), &proj_destroy);
  const PJ_COORD grid =
      proj_trans(projection.get(), PJ_FWD, proj_coord(proj_torad(longitude), proj_torad(latitude), 0, 0));
  return {grid.xy.x, grid.xy.y, height};
}

TEST_F(Flight, TheTrajectoryPassesThroughTheShotOrigins) {
  for (std::size_t shot = 0; shot < ticks.size(); shot += 10) { // 2000 shots and 200 records per second
    const std::size_t record = shot / 10;
    ASSERT_NEAR(pathStamp[record], static_cast<double>(ticks[shot]) * 4e-12, 1e-9);
    const auto here = projected(pose[0][record], pose[1][record], pose[2][record]);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      ASSERT_NEAR(here[axis], origin[3 * shot + axis], 1e-3) << shot;
    }
  }
}

/// Turns scanner coordinates (forward, right, down) to north, east, down by yaw, pitch and roll in degrees.
std::array<double, 3> turned(const double* v, double rollDeg, double pitchDeg, double yawDeg) {
  const double sr = std::sin(proj_torad(rollDeg)), cr = std::cos(proj_torad(rollDeg));
  const double sp = std::sin(proj_torad(pitchDeg)), cp = std::cos(proj_torad(pitchDeg));
  const double sy = std::sin(proj_torad(yawDeg)), cy = std::cos(proj_torad(yawDeg));
  const double rolled[3] = {v[0], v[1] * cr - v[2] * sr, v[1] * sr + v[2] * cr};
  const double pitched[3] = {rolled[0] * cp + rolled[2] * sp, rolled[1], -rolled[0] * sp + rolled[2] * cp};
  return {pitched[0] * cy - pitched[1] * sy, pitched[0] * sy + pitched[1] * cy, pitched[2]};
}

TEST_F(Flight, PoseAndScannerCoordinatesGiveThePoints) {
  for (std::size_t shot = 0; echoFirst[shot] < stamp.size(); shot += 10) {
    const std::size_t echo = echoFirst[shot], record = shot / 10;
    const auto away = turned(&scannerPlace[3 * echo], pose[3][record], pose[4][record], pose[5][record]);
    // From the geodetic position of the scanner, on to that of the point, and from there to the grid.
    const double latitude = proj_torad(pose[1][record]), sine = std::sin(latitude);
    const double root = std::sqrt(1 - 0.0066943799901413165 * sine * sine);
    const double north = 6378137 * (1 - 0.0066943799901413165) / (root * root * root), east = 6378137 / root;
    const auto there = projected(pose[0][record] + proj_todeg(away[1] / (east * std::cos(latitude))),
                                 pose[1][record] + proj_todeg(away[0] / north), pose[2][record] - away[2]);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      ASSERT_NEAR(there[axis], place[3 * echo + axis], 0.05) << shot;
    }
  }
}

TEST_F(Flight, PathLengthIsTheWayFlown) {
  for (std::size_t record = 1; record < pathStamp.size(); ++record) {
    const auto before = projected(pose[0][record - 1], pose[1][record - 1], pose[2][record - 1]);
    const auto here = projected(pose[0][record], pose[1][record], pose[2][record]);
    const double grid = std::hypot(here[0] - before[0], here[1] - before[1], here[2] - before[2]);
    ASSERT_NEAR(pose[6][record] - pose[6][record - 1], grid, 1e-3 * grid);
  }
}

} // namespace
