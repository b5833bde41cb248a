// SPDX-License-Identifier: BSD-3-Clause
// The content of the corpus files: 17 records of every element type, told by a rule.
#pragma once

#include "container/format/attribute.h"
#include "container/format/element_traits.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

namespace corpus {

inline constexpr std::uint64_t recordCount = 17;
inline constexpr std::uint64_t blockRows = 7;
inline constexpr const char* firstItem = "riegl.time_base";
inline constexpr const char* firstText = "{\"epoch\": \"2015-10-27T00:00:00+00:00\"}";
inline constexpr const char* secondItem = "\u00d6sterreich";

/// A value of the column of that type: the extremes first, then small numbers.
template <class Element>
Element valueOf(std::uint64_t record, unsigned int component) {
  using Limits = std::numeric_limits<Element>;
  if (record < 2) {
    return record == 0 ? Limits::lowest() : Limits::max();
  }
  if constexpr (std::is_floating_point_v<Element>) {
    if (record < 5) {
      return record == 2   ? Limits::infinity()
             : record == 3 ? Limits::quiet_NaN()
                           : static_cast<Element>(-0.0);
    }
    return static_cast<Element>(0.1) * static_cast<Element>(record * 7 + component * 3);
  }
  return static_cast<Element>(record * 7 + component * 3);
}

/// The attribute of that type: the name of the type, and one to three values per record.
inline container::Attribute attributeOf(container::ElementType type) {
  const auto index = static_cast<unsigned int>(type);
  container::Attribute attribute;
  attribute.name = std::string(container::name(type));
  attribute.type = type;
  attribute.length = 1 + index % 3;
  return attribute;
}

/// All values of the column of that type.
template <class Element>
std::vector<Element> column() {
  std::vector<Element> values;
  const unsigned int length = attributeOf(container::elementTypeOf<Element>).length;
  for (std::uint64_t record = 0; record < recordCount; ++record) {
    for (unsigned int component = 0; component < length; ++component) {
      values.push_back(valueOf<Element>(record, component));
    }
  }
  return values;
}

/// One column more, whose values are stored x 0.001 + 1000.
inline container::Attribute scaledAttribute() {
  return {"scaled", container::ElementType::int32, 1, 0.001, 1000, "m", "H\u00f6he", "Height above the sea"};
}

inline std::vector<std::int32_t> scaledColumn() {
  std::vector<std::int32_t> values;
  for (std::uint64_t record = 0; record < recordCount; ++record) {
    values.push_back(static_cast<std::int32_t>(record * 1001) - 5000);
  }
  return values;
}

} // namespace corpus
