// SPDX-License-Identifier: BSD-3-Clause
// The loops of all conversions, one per pair of types, written for the compiler's vectoriser.
// Compiled with optimisation in every preset.
#include "container/read/conversion.h"

#include "container/format/element_traits.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

namespace container {
namespace {

static_assert(std::endian::native == std::endian::little,
              "stored values are little-endian, and read as they are");
static_assert(std::numeric_limits<double>::is_iec559 && std::numeric_limits<float>::is_iec559);

// Added to a double below 2^51 in magnitude, this leaves the rounded integer in the low bits of the sum.
constexpr double roundingShift = 6755399441055744.0;

template <class To>
To roundedTo32Bits(double value) {
  constexpr auto least = static_cast<double>(std::numeric_limits<To>::min());
  constexpr auto greatest = static_cast<double>(std::numeric_limits<To>::max());
  value = value == value ? value : 0.0;
  value = value < least ? least : value;
  value = value > greatest ? greatest : value;
  return static_cast<To>(static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(value + roundingShift)));
}

template <class To>
To roundedTo64Bits(double value) {
  constexpr auto least = static_cast<double>(std::numeric_limits<To>::min());
  constexpr double bound = std::is_signed_v<To> ? 0x1p63 : 0x1p64; // one above the greatest value
  if (!(value > least)) {
    return value <= least ? std::numeric_limits<To>::min() : To{0};
  }
  if (value >= bound) {
    return std::numeric_limits<To>::max();
  }
  const double shift = std::copysign(0x1p52, value); // from 2^52 on, every double is an integer
  return static_cast<To>(std::abs(value) < 0x1p52 ? (value + shift) - shift : value);
}

template <class To>
To fromDouble(double value) {
  if constexpr (std::is_floating_point_v<To>) {
    return static_cast<To>(value);
  } else if constexpr (sizeof(To) <= 4) {
    return roundedTo32Bits<To>(value);
  } else {
    return roundedTo64Bits<To>(value);
  }
}

template <class To, class From>
To saturated(From value) {
  using ToLimits = std::numeric_limits<To>;
  using FromLimits = std::numeric_limits<From>;
  if constexpr (std::cmp_less(FromLimits::min(), ToLimits::min())) {
    constexpr auto least = static_cast<From>(ToLimits::min());
    value = value < least ? least : value;
  }
  if constexpr (std::cmp_greater(FromLimits::max(), ToLimits::max())) {
    constexpr auto greatest = static_cast<From>(ToLimits::max());
    value = value > greatest ? greatest : value;
  }
  return static_cast<To>(value);
}

template <class To, class From, bool AsIs>
To converted(From value, double scale, double offset) {
  if constexpr (!AsIs) {
    return fromDouble<To>(static_cast<double>(value) * scale + offset);
  } else if constexpr (std::is_floating_point_v<To>) {
    return static_cast<To>(value);
  } else if constexpr (std::is_floating_point_v<From>) {
    return fromDouble<To>(static_cast<double>(value));
  } else {
    return saturated<To>(value);
  }
}

template <class From, class To, bool AsIs>
void convert(const unsigned char* __restrict from, unsigned char* __restrict to, std::size_t count,
             double scale, double offset) {
  for (std::size_t i = 0; i < count; ++i) {
    From value;
    std::memcpy(&value, from + i * sizeof(From), sizeof(From)); // callers' buffers have any alignment
    const To result = converted<To, From, AsIs>(value, scale, offset);
    std::memcpy(to + i * sizeof(To), &result, sizeof(To));
  }
}

using Row = std::array<std::array<Conversion, 2>, elementTypeCount>; // by target type, then by "as is"

template <class From, std::size_t... to>
constexpr Row rowFrom(std::index_sequence<to...>) {
  return {{{&convert<From, ElementAt<to>, false>, &convert<From, ElementAt<to>, true>}...}};
}

template <std::size_t... from>
constexpr std::array<Row, elementTypeCount> table(std::index_sequence<from...> all) {
  return {rowFrom<ElementAt<from>>(all)...};
}

constexpr auto conversions = table(std::make_index_sequence<elementTypeCount>());

} // namespace

Conversion conversionFor(ElementType from, ElementType to, bool asIs) {
  return conversions[static_cast<std::size_t>(from)][static_cast<std::size_t>(to)][asIs ? 1 : 0];
}

} // namespace container
