// SPDX-License-Identifier: BSD-3-Clause
// How the bits of a stored value are read: kind of number and bytes.
#pragma once

#include "container/format/element_traits.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace container {

enum class NumberKind : std::uint8_t { signedInteger, unsignedInteger, real };

/// One of the ten element types: integers of 1, 2, 4 or 8 bytes, reals (IEEE 754 binary) of 4 or 8.
struct ValueFormat {
  NumberKind kind = NumberKind::real;
  std::size_t bytes = 8;
};

/// The format of the values of an element type.
inline ValueFormat valueFormat(ElementType type) {
  return visitElement(type, []<class Element>(std::type_identity<Element>) -> ValueFormat {
    const NumberKind integer =
        std::is_signed_v<Element> ? NumberKind::signedInteger : NumberKind::unsignedInteger;
    return {std::is_floating_point_v<Element> ? NumberKind::real : integer, sizeof(Element)};
  });
}

} // namespace container
