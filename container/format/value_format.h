// SPDX-License-Identifier: BSD-3-Clause
// How the bits of a stored value are read: kind of number and bytes.
#pragma once

#include <cstddef>
#include <cstdint>

namespace container {

enum class NumberKind : std::uint8_t { signedInteger, unsignedInteger, real };

/// One of the ten element types: integers of 1, 2, 4 or 8 bytes, reals (IEEE 754 binary) of 4 or 8.
struct ValueFormat {
  NumberKind kind = NumberKind::real;
  std::size_t bytes = 8;
};

} // namespace container
