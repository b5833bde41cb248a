// SPDX-License-Identifier: BSD-3-Clause
// Reals that stand in a block as 32-bit integers: i for double(i) * scale + offset, bit for bit.
#pragma once

#include "container/format/value_format.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace container::codec {

/// What the integers of one component stand for.
struct Scaling {
  double scale = 1;
  double offset = 0;

  friend bool operator==(const Scaling&, const Scaling&) = default;
};

/// Whether both numbers are finite and the scale is not 0.
bool isUsable(const Scaling& scaling);

/// Gives integers their values: `double(i) * scale + offset`, the product and the sum each rounded to float64, and the
/// sum then rounded to the stored type.
class ScaledValues {
 public:
  /// \param scaling  one per component
  /// \param format   real, of 4 or 8 bytes
  ScaledValues(std::span<const Scaling> scaling, ValueFormat format);

  /// \param integers  `records` records of as many integers as there are components, any alignment
  /// \param values    receives the values, any alignment; must not overlap `integers`
  /// \threads safe on distinct results
  void restore(const std::byte* integers, std::size_t records, std::byte* values) const;

 private:
  std::size_t length = 0;
  std::size_t valueBytes = 8;
  std::vector<double> scales; // of whole records, repeated, so that a loop takes many values at a time
  std::vector<double> offsets;
};

/// Finds the integers that stand for values.
///
/// \param values    `records` records of scaling.size() values of `format`, any alignment
/// \param integers  receives as many integers; holds anything where the result is false
/// \return  whether every value comes back bit for bit; NaN and the infinities never do, -0.0 hardly ever
/// \threads safe on distinct results
bool findIntegers(std::span<const Scaling> scaling, ValueFormat format, const std::byte* values,
                  std::size_t records, std::int32_t* integers);

/// The first value of one component that a scaling does not give back bit for bit.
///
/// \param values       the first value of the component, any alignment
/// \param strideBytes  from one value of the component to the next
/// \param count        values of the component
/// \return  0 to count - 1, or `count` where every value comes back
/// \threads safe
std::uint64_t firstValueLost(const Scaling& scaling, ValueFormat format, const std::byte* values,
                             std::size_t strideBytes, std::uint64_t count);

} // namespace container::codec
