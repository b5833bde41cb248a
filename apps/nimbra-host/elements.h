// SPDX-License-Identifier: BSD-3-Clause
// The elements of a chunk by their type: name of the type, and access without a copy.
#pragma once

#include "arrays/nimbra/element_records.h"
#include "model/torvel/core/typename.h"
#include "model/torvel/references/chunk_base.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace nimbrahost {

/// Name of an element type in all output; these names never change.
template <class T>
constexpr std::string_view elementTypeName() {
  if constexpr (std::is_same_v<T, double>) {
    return "double";
  } else if constexpr (std::is_same_v<T, float>) {
    return "float";
  } else if constexpr (std::is_same_v<T, short>) {
    return "short";
  } else if constexpr (std::is_same_v<T, unsigned short>) {
    return "unsigned short";
  } else if constexpr (std::is_same_v<T, int>) {
    return "int";
  } else if constexpr (std::is_same_v<T, unsigned int>) {
    return "unsigned int";
  } else if constexpr (std::is_same_v<T, unsigned long long>) {
    return "unsigned long long";
  } else if constexpr (std::is_same_v<T, unsigned char>) {
    return "unsigned char";
  } else if constexpr (std::is_same_v<T, Quillon::PhysicalSpace::point>) {
    return "point";
  } else if constexpr (std::is_same_v<T, Quillon::PhysicalSpace::vector>) {
    return "vector";
  } else if constexpr (std::is_same_v<T, Quillon::ColourRGBA>) {
    return "rgba";
  } else {
    static_assert(std::is_same_v<T, std::string>);
    return "string";
  }
}

/// Scalars per element; a string counts as one.
template <class T>
constexpr std::size_t componentsOf() {
  if constexpr (std::is_same_v<T, std::string>) {
    return 1;
  } else {
    return static_cast<std::size_t>(Nimbra::componentCount<T>);
  }
}

/// Component `number` of an element.
template <class T>
decltype(auto) component(const T& element, std::size_t number) {
  if constexpr (componentsOf<T>() == 1) {
    return (element);
  } else {
    return element[number];
  }
}

namespace detail {

template <class T, class Visitor>
bool visitAs(const Torvel::ChunkBase& chunk, std::uint64_t most, Visitor& visit) {
  if (chunk.elementType() != typeid(T)) {
    return false;
  }
  const std::uint64_t count = std::min<std::uint64_t>(most, chunk.elementCount());
  visit(std::span<const T>(static_cast<const T*>(chunk.data()), count));
  return true;
}

template <class Visitor, class... T>
bool visitFirstMatch(const Torvel::ChunkBase& chunk, std::uint64_t most, Visitor& visit,
                     const std::tuple<T...>*) {
  return (visitAs<T>(chunk, most, visit) || ...) || visitAs<std::string>(chunk, most, visit);
}

} // namespace detail

/// Calls `visit` with the first elements of a chunk, as a std::span<const T> of its element type.
///
/// \param most  largest number of elements in the span
/// \return false, with no call, for an element type that is not one of the twelve known ones
template <class Visitor>
bool visitElements(const Torvel::ChunkBase& chunk, std::uint64_t most, Visitor&& visit) {
  return detail::visitFirstMatch(chunk, most, visit, static_cast<const Nimbra::ElementTypes*>(nullptr));
}

/// Name of the element type of a chunk; an unknown type has its C++ name.
inline std::string elementTypeNameOf(const Torvel::ChunkBase& chunk) {
  std::string name;
  const auto take = [&name]<class T>(std::span<const T>) { name = elementTypeName<T>(); };
  return visitElements(chunk, 0, take) ? name : Torvel::Typename(chunk.elementType());
}

} // namespace nimbrahost
