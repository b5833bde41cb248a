// SPDX-License-Identifier: BSD-3-Clause
// Names and sizes of the element types, in one table.
#include "container/format/element_type.h"

#include "container/format/element_traits.h"

#include <array>

namespace container {
namespace {

struct Row {
  std::string_view name;
  std::size_t bytes;
};

constexpr std::array<Row, elementTypeCount> table{{
    {"int8", 1},
    {"uint8", 1},
    {"int16", 2},
    {"uint16", 2},
    {"int32", 4},
    {"uint32", 4},
    {"int64", 8},
    {"uint64", 8},
    {"float32", 4},
    {"float64", 8},
}};

template <std::size_t... index>
constexpr bool sizesAgree(std::index_sequence<index...>) {
  return ((table[index].bytes == sizeof(ElementAt<index>)) && ...);
}
static_assert(sizesAgree(std::make_index_sequence<elementTypeCount>()),
              "the table and the traits are in one order");

} // namespace

std::size_t byteSize(ElementType type) {
  return table[static_cast<std::size_t>(type)].bytes;
}

std::string_view name(ElementType type) {
  return table[static_cast<std::size_t>(type)].name;
}

std::optional<ElementType> elementTypeNamed(std::string_view name) {
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (table[i].name == name) {
      return static_cast<ElementType>(i);
    }
  }
  return std::nullopt;
}

} // namespace container
