// SPDX-License-Identifier: BSD-3-Clause
// The terrain of a synthetic survey: hills, buildings and trees as functions of a seed and a position.
#pragma once

#include "apps/rdbtool/wgs84.h"

#include <array>
#include <cstdint>

namespace rdbtool {

/// What reflected a laser pulse; the numbers are classes of the ASPRS.
enum class Surface : std::uint8_t { ground = 2, vegetation = 5, building = 6 };

/// One reflection of a pulse.
struct Reflection {
  double range = 0; // metres from the scanner
  Surface surface = Surface::ground;
};

/// The reflections of one pulse, nearest first.
struct Reflections {
  static constexpr unsigned most = 4;
  std::array<Reflection, most> at{};
  unsigned count = 0;
};

/// Hills within 100 metres of height 250, with buildings and trees on a hashed grid.
///
/// \threads safe
class Landscape {
 public:
  explicit Landscape(std::uint64_t landSeed);

  /// Height of the bare ground, metres.
  double groundHeight(double east, double north) const;

  /// The reflections of one pulse.
  ///
  /// \param from       east, north, height, metres
  /// \param direction  change of east, north and height per metre of range; the height decreases
  /// \param chance     64 random bits of this pulse
  Reflections meet(const Vector3& from, const Vector3& direction, std::uint64_t chance) const;

 private:
  struct Wave {
    double alongEast, alongNorth, phase, height; // turns per metre, turns, metres
  };
  double roofHeight(double east, double north) const;
  double treeHeight(double east, double north) const;

  std::uint64_t seed;
  std::array<Wave, 4> waves;
};

} // namespace rdbtool
