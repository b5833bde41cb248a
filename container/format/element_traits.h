// SPDX-License-Identifier: BSD-3-Clause
// From element types to C++ types and back, at compile time and by visiting.
#pragma once

#include "container/format/element_type.h"

#include <cstddef>
#include <cstdint>
#include <tuple>
#include <type_traits>
#include <utility>

namespace container {

/// The C++ types of the values, in the order of ElementType.
using ElementList = std::tuple<std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
                               std::uint32_t, std::int64_t, std::uint64_t, float, double>;
static_assert(std::tuple_size_v<ElementList> == elementTypeCount);

template <std::size_t index>
using ElementAt = std::tuple_element_t<index, ElementList>;

/// The C++ type of an element type.
template <ElementType type>
using ElementOf = ElementAt<static_cast<std::size_t>(type)>;

namespace detail {

template <class Element, std::size_t... index>
constexpr std::size_t indexOf(std::index_sequence<index...>) {
  return ((std::is_same_v<Element, ElementAt<index>> ? index : 0) + ...);
}

} // namespace detail

/// The element type of one of the ten C++ types.
template <class Element>
inline constexpr ElementType elementTypeOf = [] {
  constexpr std::size_t index = detail::indexOf<Element>(std::make_index_sequence<elementTypeCount>());
  static_assert(std::is_same_v<Element, ElementAt<index>>, "a type that no element has");
  return static_cast<ElementType>(index);
}();

/// Calls `action` with std::type_identity of the C++ type of `type`, and returns its result.
template <class Action>
decltype(auto) visitElement(ElementType type, Action&& action) {
  switch (type) {
  case ElementType::int8:
    return action(std::type_identity<std::int8_t>());
  case ElementType::uint8:
    return action(std::type_identity<std::uint8_t>());
  case ElementType::int16:
    return action(std::type_identity<std::int16_t>());
  case ElementType::uint16:
    return action(std::type_identity<std::uint16_t>());
  case ElementType::int32:
    return action(std::type_identity<std::int32_t>());
  case ElementType::uint32:
    return action(std::type_identity<std::uint32_t>());
  case ElementType::int64:
    return action(std::type_identity<std::int64_t>());
  case ElementType::uint64:
    return action(std::type_identity<std::uint64_t>());
  case ElementType::float32:
    return action(std::type_identity<float>());
  case ElementType::float64:
    break;
  }
  return action(std::type_identity<double>());
}

} // namespace container
