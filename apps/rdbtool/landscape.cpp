// SPDX-License-Identifier: BSD-3-Clause
// The terrain of a synthetic survey: hills, buildings and trees as functions of a seed and a position.
#include "apps/rdbtool/landscape.h"

#include "apps/rdbtool/seeded_noise.h"

namespace rdbtool {

namespace {

constexpr double meanHeight = 250;
constexpr double lotMetres = 40;      // a lot may hold a building
constexpr double grovePlotMetres = 9; // a plot may hold a tree

/// Names of independent streams of random bits of one seed.
enum Stream : std::uint64_t { hills = 1, buildings, trees };

/// The cell of a square grid that contains a position, and the position in it, -0.5 to 0.5.
struct Cell {
  std::uint64_t column, row;
  double east, north;
};

Cell cellOf(double east, double north, double metres) {
  // Grid coordinates of a northern zone are positive, so truncation rounds down.
  const double column = static_cast<double>(static_cast<std::int64_t>(east / metres));
  const double row = static_cast<double>(static_cast<std::int64_t>(north / metres));
  return {static_cast<std::uint64_t>(static_cast<std::int64_t>(column)),
          static_cast<std::uint64_t>(static_cast<std::int64_t>(row)), east / metres - column - 0.5,
          north / metres - row - 0.5};
}

} // namespace

Landscape::Landscape(std::uint64_t landSeed) : seed(landSeed) {
  constexpr double lengths[] = {2900, 1300, 610, 170};
  constexpr double heights[] = {38, 17, 6, 1.2};
  for (std::size_t index = 0; index < waves.size(); ++index) {
    const double bearing = unitInterval(mixBits(seed, hills, 2 * index));
    waves[index] = {cosineOfTurns(bearing) / lengths[index], sineOfTurns(bearing) / lengths[index],
                    unitInterval(mixBits(seed, hills, 2 * index + 1)), heights[index]};
  }
}

double Landscape::groundHeight(double east, double north) const {
  double height = meanHeight;
  for (const Wave& wave : waves) {
    height += wave.height * sineOfTurns(wave.alongEast * east + wave.alongNorth * north + wave.phase);
  }
  return height;
}

/// Height of the roof above the ground; 0 where there is no building.
double Landscape::roofHeight(double east, double north) const {
  const Cell lot = cellOf(east, north, lotMetres);
  const std::uint64_t bits = mixBits(seed ^ buildings, lot.column, lot.row);
  if ((bits & 7U) != 0) {
    return 0;
  }
  const double halfWidth = 0.15 + 0.2 * static_cast<double>((bits >> 8) & 255U) / 255;
  const double halfDepth = 0.15 + 0.2 * static_cast<double>((bits >> 16) & 255U) / 255;
  const bool under =
      lot.east < halfWidth && lot.east > -halfWidth && lot.north < halfDepth && lot.north > -halfDepth;
  return under ? 4 + 11 * static_cast<double>((bits >> 24) & 255U) / 255 : 0;
}

/// Height of the crown above the ground; 0 where there is no tree.
double Landscape::treeHeight(double east, double north) const {
  const Cell plot = cellOf(east, north, grovePlotMetres);
  // Trees stand in groves: only where the coarser cell around the plot is wooded.
  const std::uint64_t wooded = mixBits(seed ^ trees, plot.column >> 4, plot.row >> 4);
  const std::uint64_t bits = mixBits(seed ^ trees, ~plot.column, plot.row);
  if ((wooded & 3U) != 0 || (bits & 3U) == 0) {
    return 0;
  }
  const double distanceSquared = plot.east * plot.east + plot.north * plot.north;
  const double tallest = 6 + 14 * static_cast<double>((bits >> 8) & 255U) / 255;
  return distanceSquared < 0.2 ? tallest * (1 - 2.5 * distanceSquared) : 0;
}

Reflections Landscape::meet(const Vector3& from, const Vector3& direction, std::uint64_t chance) const {
  const double perMetreDown = -1 / direction[2];
  double range = (from[2] - meanHeight) * perMetreDown;
  // Each iteration reduces the error to about a tenth: slope of the hills times slant of the pulse.
  for (int round = 0; round < 4; ++round) {
    const double ground = groundHeight(from[0] + range * direction[0], from[1] + range * direction[1]);
    range = (from[2] - ground) * perMetreDown;
  }
  const double east = from[0] + range * direction[0];
  const double north = from[1] + range * direction[1];
  Reflections met;
  const auto add = [&met](double at, Surface surface) { met.at[met.count++] = {at, surface}; };
  if (const double roof = roofHeight(east, north); roof > 0) {
    add(range - roof * perMetreDown, Surface::building);
    return met;
  }
  const double crown = treeHeight(east, north);
  const unsigned layers = crown > 0 ? 1 + static_cast<unsigned>(chance & 3U) % 3 : 0;
  for (unsigned layer = 0; layer < layers; ++layer) {
    const double share = 1 - (layer + unitInterval(mixBits(chance + layer)) * 0.6) / 3.2;
    add(range - crown * share * perMetreDown, Surface::vegetation);
  }
  if (layers == 0 || ((chance >> 2) & 3U) != 0) {
    add(range, Surface::ground);
  }
  return met;
}

} // namespace rdbtool
