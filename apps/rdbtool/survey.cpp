// SPDX-License-Identifier: BSD-3-Clause
// The synthetic flight: the pose of the scanner at a time, and the echoes of each of its shots.
#include "apps/rdbtool/survey.h"

#include "apps/rdbtool/seeded_noise.h"

#include <algorithm>
#include <cmath>

namespace rdbtool {

namespace {

constexpr double swathTurns = 60.0 / 360; // full angle of the scan
constexpr unsigned facets = 4;
constexpr double heightOverMean = 850; // metres over the ellipsoid: about 600 over the hills

/// Numbers of the constants of a flight.
enum Constant : std::uint64_t { dayOfWeek = 100, startSecond, startEast, startNorth, course, pace, phases };

/// Axes of the scanner in the grid (east, north, up), from roll, pitch and yaw.
struct Axes {
  Vector3 forward, right, down;
};

Axes axesOf(const Pose& pose) {
  const double sr = sineOfTurns(pose.roll), cr = cosineOfTurns(pose.roll);
  const double sp = sineOfTurns(pose.pitch), cp = cosineOfTurns(pose.pitch);
  const double sy = sineOfTurns(pose.yaw), cy = cosineOfTurns(pose.yaw);
  return {{sy * cp, cy * cp, sp},
          {cy * cr + sy * sp * sr, cy * sp * sr - sy * cr, -cp * sr},
          {sy * sp * cr - cy * sr, sy * sr + cy * sp * cr, -cp * cr}};
}

} // namespace

Survey::Survey(std::uint64_t surveySeed, std::uint64_t pulseRateHz)
    : seed(surveySeed), landscape(surveySeed), shotTicks(ticksPerSecond / pulseRateHz) {
  firstTick = (30000 + static_cast<std::uint64_t>(draw(startSecond) * 10000)) * ticksPerSecond;
  // At the usual height and speed, shots across the swath are as far apart as lines along it.
  lineShots = static_cast<std::uint32_t>(std::max(1.0, std::sqrt(10.0 * static_cast<double>(pulseRateHz))));
  begin = {430000 + 40000 * draw(startEast), 5540000 + 40000 * draw(startNorth), heightOverMean};
  heading = draw(course);
  speed = 55 + 10 * draw(pace);
  // Rounded, because the sines of different machines differ in the last bit.
  const double exactScale = TransverseMercatorZone(surveyZone).around({begin[0], begin[1]}).scale;
  gridScale = std::nearbyint(exactScale * 1e9) / 1e9;
}

double Survey::draw(std::uint64_t index) const {
  return unitInterval(mixBits(seed, index));
}

std::chrono::sys_days Survey::day() const {
  constexpr std::chrono::sys_days sunday = std::chrono::year(2024) / std::chrono::May / 12;
  return sunday + std::chrono::days(static_cast<int>(draw(dayOfWeek) * 7));
}

Pose Survey::poseAt(std::uint64_t ticks) const {
  const double elapsed = static_cast<double>(ticks - firstTick) * tickSeconds;
  const double along = speed * elapsed;
  const double drift = 4 * sineOfTurns(elapsed / 83);
  const double sine = sineOfTurns(heading), cosine = cosineOfTurns(heading);
  Pose pose;
  pose.place = {begin[0] + along * sine + drift * cosine, begin[1] + along * cosine - drift * sine,
                begin[2] + 6 * sineOfTurns(elapsed / 131)};
  pose.roll = 1.3 / 360 * sineOfTurns(elapsed / 7.1 + draw(phases));
  pose.pitch = (2 + 0.5 * sineOfTurns(elapsed / 11.3 + draw(phases + 1))) / 360;
  pose.yaw = heading + 1.6 / 360 * sineOfTurns(elapsed / 23.9 + draw(phases + 2));
  return pose;
}

Shot Survey::shot(std::uint64_t number) const {
  Shot shot;
  shot.number = number;
  shot.ticks = firstTick + number * shotTicks;
  shot.seconds = static_cast<double>(shot.ticks) * tickSeconds;
  shot.chance = mixBits(seed, number, 7);
  shot.gridScale = gridScale;
  const auto inLine = static_cast<std::uint32_t>(number % lineShots);
  shot.line = static_cast<std::uint32_t>(number / lineShots);
  shot.lineStart = inLine == 0;
  shot.facet = static_cast<std::uint8_t>(shot.line % facets);
  shot.mirrorTurns = swathTurns * ((inLine + 0.5) / lineShots - 0.5);
  // Each facet is tilted slightly forward or back, as in real mirrors.
  const double tilt = (shot.facet - 1.5) * 0.0008;
  const double across = sineOfTurns(shot.mirrorTurns), down = cosineOfTurns(shot.mirrorTurns);
  shot.scannerDirection = {sineOfTurns(tilt), across * cosineOfTurns(tilt), down * cosineOfTurns(tilt)};
  const Pose pose = poseAt(shot.ticks);
  const Axes axes = axesOf(pose);
  shot.origin = pose.place;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    shot.direction[axis] = axes.forward[axis] * shot.scannerDirection[0] +
                           axes.right[axis] * shot.scannerDirection[1] +
                           axes.down[axis] * shot.scannerDirection[2];
  }
  const Vector3 step = {shot.direction[0] * gridScale, shot.direction[1] * gridScale, shot.direction[2]};
  shot.echoes = landscape.meet(shot.origin, step, shot.chance);
  return shot;
}

} // namespace rdbtool
