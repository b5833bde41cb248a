// SPDX-License-Identifier: BSD-3-Clause
// The grid of whole millimetres on which scanners write coordinates.
#pragma once

#include "apps/rdbtool/column_batch.h"
#include "apps/rdbtool/wgs84.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace rdbtool {

/// The distance between neighbouring coordinates, metres.
constexpr double gridStep = 0.001;
/// East, north and height of a survey's coordinates are integers x gridStep + these offsets, metres. 32-bit integers
/// reach 2147 km around them.
constexpr Vector3 surveyOffset{450000, 5560000, 0};
/// The same for coordinates in the axes of the scanner, and for ranges.
constexpr Vector3 scannerOffset{};

/// The value `integer x gridStep + offset`, with these two roundings, that is nearest to a length.
/// \param metres  within 9e12 metres of the offset
constexpr double onMillimetreGrid(double metres, double offset = 0) {
  const double steps = (metres - offset) * 1000;
  const auto whole = static_cast<std::int64_t>(steps + (steps < 0 ? -0.5 : 0.5));
  return static_cast<double>(whole) * gridStep + offset;
}

/// The same for each axis.
constexpr Vector3 onMillimetreGrid(const Vector3& place, const Vector3& offset) {
  return {onMillimetreGrid(place[0], offset[0]), onMillimetreGrid(place[1], offset[1]),
          onMillimetreGrid(place[2], offset[2])};
}

/// The grid as a hint for the writer, see ColumnBatch::add.
inline std::vector<SourceScaling> millimetres(const Vector3& offset, std::size_t components = 3) {
  std::vector<SourceScaling> axes;
  for (std::size_t axis = 0; axis < components; ++axis) {
    axes.push_back({gridStep, offset[axis]});
  }
  return axes;
}

} // namespace rdbtool
