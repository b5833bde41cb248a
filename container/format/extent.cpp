// SPDX-License-Identifier: BSD-3-Clause
// Finds least and greatest stored values in loops that the compiler vectorises, and scales only those.
#include "container/format/extent.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

namespace container {
namespace {

// Several records at a time, so that a step has enough values for wide registers whatever the length is.
constexpr std::size_t leastStepValues = 64;
constexpr std::size_t mostStepValues = leastStepValues + mostExtentComponents;

template <class T>
constexpr bool isReal = std::is_floating_point_v<T>;

template <class T>
using CountOf = std::conditional_t<sizeof(T) == 8, std::uint64_t, std::uint32_t>;

template <class T>
constexpr T highest = isReal<T> ? std::numeric_limits<T>::infinity() : std::numeric_limits<T>::max();

template <class T>
constexpr T lowest = isReal<T> ? -std::numeric_limits<T>::infinity() : std::numeric_limits<T>::lowest();

// Takes one value per place; NaN is neither less nor greater.
template <class T>
void addStep(const std::byte* __restrict values, std::size_t count, T* __restrict least,
             T* __restrict greatest, CountOf<T>* __restrict missing) {
  for (std::size_t i = 0; i < count; ++i) {
    T value;
    std::memcpy(&value, values + i * sizeof value, sizeof value);
    least[i] = value < least[i] ? value : least[i];
    greatest[i] = value > greatest[i] ? value : greatest[i];
    if constexpr (isReal<T>) {
      missing[i] += value != value ? 1 : 0;
    }
  }
}

/// Running results, one for each place in a step.
template <class T>
struct Places {
  std::array<T, mostStepValues> least;
  std::array<T, mostStepValues> greatest;
  std::array<CountOf<T>, mostStepValues> missing{};

  Places() {
    least.fill(highest<T>);
    greatest.fill(lowest<T>);
  }

  void add(const std::byte* values, std::size_t count) {
    addStep<T>(values, count, least.data(), greatest.data(), missing.data());
  }
};

/// Least and greatest stored value of a component.
template <class T>
struct Range {
  T least = highest<T>;
  T greatest = lowest<T>;
  std::uint64_t missing = 0;
};

template <class T>
using Ranges = std::array<Range<T>, mostExtentComponents>;

template <class T>
void addRecords(const std::byte* values, std::size_t length, std::uint64_t records, Ranges<T>& ranges) {
  const std::size_t step = (leastStepValues + length - 1) / length * length;
  constexpr std::uint64_t most = 1U << 30; // values at a time: no count of a place overflows
  const std::uint64_t total = records * length;
  for (std::uint64_t begin = 0; begin < total; begin += most / step * step) {
    const std::uint64_t end = std::min(total, begin + most / step * step);
    Places<T> places;
    for (std::uint64_t first = begin; first < end; first += step) {
      places.add(values + first * sizeof(T), std::min<std::uint64_t>(step, end - first));
    }
    for (std::size_t i = 0; i < step; ++i) {
      Range<T>& range = ranges[i % length];
      range.least = std::min(range.least, places.least[i]);
      range.greatest = std::max(range.greatest, places.greatest[i]);
      range.missing += places.missing[i];
    }
  }
}

// The nearest float64 on this side: -1 for the greatest that is not above the value, 1 for the least not below.
template <class T>
double outward(T value, int side) {
  const double nearest = static_cast<double>(value);
  if constexpr (std::is_integral_v<T> && sizeof(T) == 8) {
    constexpr double beyond = 2.0 * static_cast<double>(std::numeric_limits<T>::max() / 2 + 1);
    const bool isAbove = nearest >= beyond || static_cast<T>(nearest) > value;
    const bool isBelow = !isAbove && static_cast<T>(nearest) < value;
    if (side < 0 ? isAbove : isBelow) {
      return std::nextafter(nearest, side * std::numeric_limits<double>::infinity());
    }
  }
  return nearest;
}

template <class T>
ComponentExtent scaled(const Range<T>& range, const StoredValues& block) {
  if (range.missing == block.records) {
    return {{}, {}, range.missing};
  }
  const double one = outward(range.least, -1) * block.scale + block.offset;
  const double other = outward(range.greatest, 1) * block.scale + block.offset;
  return {std::min(one, other) + 0.0, std::max(one, other) + 0.0, range.missing};
}

template <class T>
std::vector<ComponentExtent> extents(const StoredValues& block) {
  Ranges<T> ranges;
  addRecords<T>(block.values, block.length, block.records, ranges);
  std::vector<ComponentExtent> found;
  for (std::size_t c = 0; c < block.length; ++c) {
    found.push_back(scaled(ranges[c], block));
  }
  return found;
}

// Scale and offset that may themselves bring NaN: every value is scaled.
template <class T>
std::vector<ComponentExtent> extentsOneByOne(const StoredValues& block) {
  Ranges<double> ranges;
  for (std::uint64_t i = 0; i < block.records * block.length; ++i) {
    T value;
    std::memcpy(&value, block.values + i * sizeof value, sizeof value);
    const double real = static_cast<double>(value) * block.scale + block.offset;
    Range<double>& range = ranges[i % block.length];
    range.least = real < range.least ? real : range.least;
    range.greatest = real > range.greatest ? real : range.greatest;
    range.missing += real != real ? 1 : 0;
  }
  StoredValues unscaled = block;
  unscaled.scale = 1;
  unscaled.offset = 0;
  std::vector<ComponentExtent> found;
  for (std::size_t c = 0; c < block.length; ++c) {
    found.push_back(scaled(ranges[c], unscaled));
  }
  return found;
}

template <class T>
std::vector<ComponentExtent> extentsAs(const StoredValues& block) {
  const bool isOrdinary = std::isfinite(block.scale) && block.scale != 0 && std::isfinite(block.offset);
  return isOrdinary ? extents<T>(block) : extentsOneByOne<T>(block);
}

template <class Byte, class Two, class Four, class Eight>
std::vector<ComponentExtent> extentsOfIntegers(const StoredValues& block) {
  switch (block.format.bytes) {
  case 1:
    return extentsAs<Byte>(block);
  case 2:
    return extentsAs<Two>(block);
  case 4:
    return extentsAs<Four>(block);
  default:
    return extentsAs<Eight>(block);
  }
}

} // namespace

std::vector<ComponentExtent> extentsOf(const StoredValues& block) {
  if (block.length > mostExtentComponents) {
    return {};
  }
  switch (block.format.kind) {
  case NumberKind::signedInteger:
    return extentsOfIntegers<std::int8_t, std::int16_t, std::int32_t, std::int64_t>(block);
  case NumberKind::unsignedInteger:
    return extentsOfIntegers<std::uint8_t, std::uint16_t, std::uint32_t, std::uint64_t>(block);
  default:
    return block.format.bytes == sizeof(float) ? extentsAs<float>(block) : extentsAs<double>(block);
  }
}

} // namespace container
