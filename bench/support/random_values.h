// SPDX-License-Identifier: BSD-3-Clause
// Values that follow from a seed, the same in every run.
#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

namespace bench {

/// A well-mixed 64-bit number for each index; the mixer of SplitMix64.
inline std::uint64_t mixed(std::uint64_t seed, std::uint64_t index) {
  std::uint64_t value = seed * 0xd1342543de82ef95U + (index + 1) * 0x9e3779b97f4a7c15U;
  value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9U;
  value = (value ^ (value >> 27)) * 0x94d049bb133111ebU;
  return value ^ (value >> 31);
}

/// Number `index` of the sequence of a seed: an integer of all bits, or a real number from 0 to below 1000.
template <class T>
T randomValue(std::uint64_t seed, std::uint64_t index) {
  const std::uint64_t bits = mixed(seed, index);
  if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>(static_cast<double>(bits >> 11) * 0x1p-53 * 1000.0);
  } else {
    return static_cast<T>(bits);
  }
}

/// Numbers `first` to `first + count` of the sequence.
template <class T>
std::vector<T> randomValues(std::uint64_t seed, std::uint64_t first, std::size_t count) {
  std::vector<T> values(count);
  for (std::size_t i = 0; i < count; ++i) {
    values[i] = randomValue<T>(seed, first + i);
  }
  return values;
}

} // namespace bench
