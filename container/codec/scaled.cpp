// SPDX-License-Identifier: BSD-3-Clause
// Both directions of scaled values. Compiled without fused operations: product and sum are rounded each.
#include "container/codec/scaled.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace container::codec {
namespace {

// Values per step of the inner loops, at least; then scale and offset come from the first-level cache.
constexpr std::size_t stepValues = 256;

template <class T>
using BitsOf = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;

template <class Real>
void restoreStep(const std::byte* __restrict integers, const double* __restrict scales,
                 const double* __restrict offsets, std::size_t count, std::byte* __restrict values) {
  for (std::size_t i = 0; i < count; ++i) {
    std::int32_t integer;
    std::memcpy(&integer, integers + i * sizeof integer, sizeof integer);
    const auto value = static_cast<Real>(static_cast<double>(integer) * scales[i] + offsets[i]);
    std::memcpy(values + i * sizeof value, &value, sizeof value);
  }
}

// Whether all values of a step come back.
template <class Real>
bool findStep(const std::byte* __restrict values, const double* __restrict scales,
              const double* __restrict offsets, std::size_t count, std::int32_t* __restrict integers) {
  constexpr double roundsToInteger = 0x1.8p52; // the sum has no bits behind the point
  BitsOf<Real> differences = 0;
  for (std::size_t i = 0; i < count; ++i) {
    Real value;
    std::memcpy(&value, values + i * sizeof value, sizeof value);
    const double quotient = (static_cast<double>(value) - offsets[i]) / scales[i];
    // What does not fit becomes 0, which then differs.
    const double inRange = std::fabs(quotient) <= 2147483647.0 ? quotient : 0.0;
    const auto integer = static_cast<std::int32_t>((inRange + roundsToInteger) - roundsToInteger);
    const auto back = static_cast<Real>(static_cast<double>(integer) * scales[i] + offsets[i]);
    differences |= std::bit_cast<BitsOf<Real>>(back) ^ std::bit_cast<BitsOf<Real>>(value);
    integers[i] = integer;
  }
  return differences == 0;
}

std::vector<double> repeated(std::span<const Scaling> scaling, double Scaling::*part) {
  const std::size_t records = (stepValues + scaling.size() - 1) / scaling.size();
  std::vector<double> values;
  values.reserve(records * scaling.size());
  for (std::size_t r = 0; r < records; ++r) {
    for (const Scaling& component : scaling) {
      values.push_back(component.*part);
    }
  }
  return values;
}

template <class Real>
std::uint64_t firstLost(const Scaling& scaling, const std::byte* values, std::size_t strideBytes,
                        std::uint64_t count) {
  std::array<double, stepValues> scales;
  std::array<double, stepValues> offsets;
  std::array<std::byte, stepValues * sizeof(Real)> step;
  std::array<std::int32_t, stepValues> integers;
  scales.fill(scaling.scale);
  offsets.fill(scaling.offset);
  for (std::uint64_t first = 0; first < count; first += stepValues) {
    const std::size_t many = std::min<std::uint64_t>(stepValues, count - first);
    for (std::size_t i = 0; i < many; ++i) {
      std::memcpy(step.data() + i * sizeof(Real), values + (first + i) * strideBytes, sizeof(Real));
    }
    if (!findStep<Real>(step.data(), scales.data(), offsets.data(), many, integers.data())) {
      std::size_t i = 0;
      while (
          findStep<Real>(step.data() + i * sizeof(Real), scales.data(), offsets.data(), 1, integers.data())) {
        ++i;
      }
      return first + i;
    }
  }
  return count;
}

} // namespace

bool isUsable(const Scaling& scaling) {
  return std::isfinite(scaling.scale) && std::isfinite(scaling.offset) && scaling.scale != 0;
}

ScaledValues::ScaledValues(std::span<const Scaling> scaling, ValueFormat format)
    : length(scaling.size()), valueBytes(format.bytes), scales(repeated(scaling, &Scaling::scale)),
      offsets(repeated(scaling, &Scaling::offset)) {}

void ScaledValues::restore(const std::byte* integers, std::size_t records, std::byte* values) const {
  const std::size_t total = records * length;
  for (std::size_t first = 0; first < total; first += scales.size()) {
    const std::size_t count = std::min(scales.size(), total - first);
    const std::byte* from = integers + first * sizeof(std::int32_t);
    std::byte* to = values + first * valueBytes;
    if (valueBytes == sizeof(float)) {
      restoreStep<float>(from, scales.data(), offsets.data(), count, to);
    } else {
      restoreStep<double>(from, scales.data(), offsets.data(), count, to);
    }
  }
}

bool findIntegers(std::span<const Scaling> scaling, ValueFormat format, const std::byte* values,
                  std::size_t records, std::int32_t* integers) {
  const std::vector<double> scales = repeated(scaling, &Scaling::scale);
  const std::vector<double> offsets = repeated(scaling, &Scaling::offset);
  const std::size_t total = records * scaling.size();
  for (std::size_t first = 0; first < total; first += scales.size()) {
    const std::size_t count = std::min(scales.size(), total - first);
    const std::byte* from = values + first * format.bytes;
    const bool found = format.bytes == sizeof(float)
                           ? findStep<float>(from, scales.data(), offsets.data(), count, integers + first)
                           : findStep<double>(from, scales.data(), offsets.data(), count, integers + first);
    if (!found) {
      return false;
    }
  }
  return true;
}

std::uint64_t firstValueLost(const Scaling& scaling, ValueFormat format, const std::byte* values,
                             std::size_t strideBytes, std::uint64_t count) {
  return format.bytes == sizeof(float) ? firstLost<float>(scaling, values, strideBytes, count)
                                       : firstLost<double>(scaling, values, strideBytes, count);
}

} // namespace container::codec
