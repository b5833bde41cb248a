// SPDX-License-Identifier: BSD-3-Clause
// Converts elements as a database client does, for clients whose columns are plain memory.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace support {

/// Calls `use` with a value of the element type that has the number `type` (1 uint8 to 10 float64).
template <class Use>
auto withElement(unsigned type, Use use) {
  switch (type) {
  case 1:
    return use(std::uint8_t{});
  case 2:
    return use(std::int8_t{});
  case 3:
    return use(std::uint16_t{});
  case 4:
    return use(std::int16_t{});
  case 5:
    return use(std::uint32_t{});
  case 6:
    return use(std::int32_t{});
  case 7:
    return use(std::uint64_t{});
  case 8:
    return use(std::int64_t{});
  case 9:
    return use(float{});
  case 10:
    return use(double{});
  default:
    throw std::invalid_argument("expected an element type of 1 to 10, found " + std::to_string(type));
  }
}

inline std::size_t elementBytes(unsigned type) {
  return withElement(type, [](auto element) { return sizeof(element); });
}

/// To an integer: half to even, saturated, not-a-number as 0. To a float: the nearest value.
template <class To, class From>
To converted(From value) {
  using Limits = std::numeric_limits<To>;
  if constexpr (std::is_floating_point_v<To>) {
    return static_cast<To>(value);
  } else if constexpr (std::is_floating_point_v<From>) {
    if (std::isnan(value)) {
      return 0;
    }
    const double rounded = std::nearbyint(static_cast<double>(value));
    if (rounded < static_cast<double>(Limits::lowest())) {
      return Limits::lowest();
    }
    return rounded >= std::ldexp(1.0, Limits::digits) ? Limits::max() : static_cast<To>(rounded);
  } else {
    if (std::cmp_less(value, Limits::lowest())) {
      return Limits::lowest();
    }
    return std::cmp_greater(value, Limits::max()) ? Limits::max() : static_cast<To>(value);
  }
}

/// Writes `count` elements of the type `fromType` to `to` as elements of the type `toType`; any alignment.
inline void convertElements(const unsigned char* from, unsigned fromType, void* to, unsigned toType,
                            std::size_t count) {
  withElement(fromType, [&](auto stored) {
    withElement(toType, [&](auto requested) {
      for (std::size_t i = 0; i < count; ++i) {
        std::memcpy(&stored, from + i * sizeof(stored), sizeof(stored));
        requested = converted<decltype(requested)>(stored);
        std::memcpy(static_cast<unsigned char*>(to) + i * sizeof(requested), &requested, sizeof(requested));
      }
    });
  });
}

} // namespace support
