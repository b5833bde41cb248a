// SPDX-License-Identifier: BSD-3-Clause
// The least and the greatest value of each component of a block.
#pragma once

#include "container/format/value_format.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace container {

/// Attributes with more components than these have no extents.
inline constexpr std::uint64_t mostExtentComponents = 16;

/// The extent of one component of one block, in values after scale and offset.
struct ComponentExtent {
  std::optional<double> minimum; ///< no value: all are missing
  std::optional<double> maximum;
  std::uint64_t missing = 0; ///< values that are not a number

  friend bool operator==(const ComponentExtent&, const ComponentExtent&) = default;
};

/// The values of a block as they are stored, and what they stand for: stored x scale + offset.
struct StoredValues {
  const std::byte* values = nullptr; ///< little-endian, record after record, any alignment
  ValueFormat format;
  std::uint64_t length = 1; ///< values per record
  std::uint64_t records = 0;
  double scale = 1;
  double offset = 0;
};

/// Finds the extents of a block.
///
/// Infinities count as values, NaN as missing. 64-bit integers that float64 does not hold are rounded outward: minima
/// down, maxima up. -0.0 is given as 0.0.
/// \return  one per component; none for more than mostExtentComponents
/// \errors  none
/// \threads safe
std::vector<ComponentExtent> extentsOf(const StoredValues& block);

} // namespace container
