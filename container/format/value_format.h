// SPDX-License-Identifier: BSD-3-Clause
// How the bits of a stored value are read: kind of number and bytes.
#pragma once

#include "container/format/element_type.h"

#include <cstddef>
#include <cstdint>

namespace container {

enum class NumberKind : std::uint8_t { signedInteger, unsignedInteger, real };

/// One of the ten element types: integers of 1, 2, 4 or 8 bytes, reals (IEEE 754 binary) of 4 or 8.
struct ValueFormat {
  NumberKind kind = NumberKind::real;
  std::size_t bytes = 8;
};

/// The format of the values of an element type.
inline ValueFormat valueFormat(ElementType type) {
  const bool isReal = type == ElementType::float32 || type == ElementType::float64;
  const bool isSigned = static_cast<unsigned int>(type) % 2 == 0; // signed and unsigned types alternate
  return {isReal     ? NumberKind::real
          : isSigned ? NumberKind::signedInteger
                     : NumberKind::unsignedInteger,
          byteSize(type)};
}

} // namespace container
