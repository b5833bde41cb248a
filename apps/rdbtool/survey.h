// SPDX-License-Identifier: BSD-3-Clause
// The synthetic flight: the pose of the scanner at a time, and the echoes of each of its shots.
#pragma once

#include "apps/rdbtool/calendar_date.h"
#include "apps/rdbtool/landscape.h"
#include "apps/rdbtool/wgs84.h"

#include <cstdint>

namespace rdbtool {

/// The grid zone of all surveys, EPSG 32633.
constexpr int surveyZone = 33;
/// Ticks of 4 picoseconds, in which shots are stamped.
constexpr double tickSeconds = 4e-12;
/// Speed of light in the air of the survey, metres per second.
constexpr double groupVelocity = 299711000.0;
constexpr std::uint64_t ticksPerSecond = 250000000000;
constexpr std::uint64_t secondsPerDay = 86400;

/// Position and attitude of the scanner. Angles in turns; yaw counts clockwise from grid north.
struct Pose {
  Vector3 place{}; // east, north, ellipsoidal height, metres
  double roll = 0;
  double pitch = 0;
  double yaw = 0;
};

/// One laser pulse with its echoes.
struct Shot {
  std::uint64_t number = 0;
  std::uint64_t firstEcho = 0; // number of its first record in the scan
  std::uint64_t ticks = 0;     // since the day began
  double seconds = 0;          // the same in seconds
  std::uint64_t chance = 0;    // random bits of the shot
  Vector3 origin{};            // grid
  Vector3 direction{};         // unit vector: east, north, up
  Vector3 scannerDirection{};  // unit vector in the scanner's own axes: forward, right, down
  double gridScale = 1;
  double mirrorTurns = 0; // across the flight, positive to the right
  std::uint32_t line = 0;
  bool lineStart = false;
  std::uint8_t facet = 0;
  Reflections echoes;
};

/// A flight over a landscape, both derived from one seed.
///
/// \threads safe
class Survey {
 public:
  /// \param pulseRateHz  shots per second, 1 to 10 million
  Survey(std::uint64_t surveySeed, std::uint64_t pulseRateHz);

  /// The day of the flight, in UTC.
  std::chrono::sys_days day() const;
  /// Ticks since midnight of the first shot and the first trajectory record.
  std::uint64_t startTicks() const noexcept { return firstTick; }
  /// Ticks from one shot to the next.
  std::uint64_t ticksPerShot() const noexcept { return shotTicks; }
  /// The pose of the scanner at a time since midnight.
  /// \param ticks  not before startTicks()
  Pose poseAt(std::uint64_t ticks) const;
  /// Shot `number` of the flight; its firstEcho stays 0.
  Shot shot(std::uint64_t number) const;

 private:
  double draw(std::uint64_t index) const; // a constant of the flight, in [0, 1)

  std::uint64_t seed;
  Landscape landscape;
  std::uint64_t firstTick;
  std::uint64_t shotTicks;
  std::uint32_t lineShots; // of one sweep of the mirror across the flight
  Vector3 begin{};
  double heading;
  double speed;
  double gridScale;
};

/// The shots of a survey in order, with the number of their first echo.
class ShotStream {
 public:
  /// \param flownSurvey  must outlive the stream
  explicit ShotStream(const Survey& flownSurvey) : survey(flownSurvey) {}
  /// The next shot, from number 0 on, with its firstEcho.
  Shot next() {
    Shot shot = survey.shot(nextShot++);
    shot.firstEcho = nextEcho;
    nextEcho += shot.echoes.count;
    return shot;
  }

 private:
  const Survey& survey;
  std::uint64_t nextShot = 0;
  std::uint64_t nextEcho = 0;
};

} // namespace rdbtool
