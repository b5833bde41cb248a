// SPDX-License-Identifier: BSD-3-Clause
// Joins checksums by arithmetic on polynomials.
//
// A CRC-32 is a remainder: the bits of a message are the coefficients of a polynomial over the field of two elements,
// and its checksum is that polynomial modulo P, of degree 32. To append n bits is to multiply by x^n and to add (exclusive
// or) the polynomial of the appended bits. The checksum inverts all bits before and after; both inversions cancel
// in the sum, so that
//
//     crc(A B) = crc(A) * x^(8 * bytes of B) mod P  xor  crc(B)
//
// The power is a product of some of x^1, x^2, x^4, x^8, ..., one for each bit of the exponent. Each of these is the square
// of the one before. As the bits of a byte go into a CRC-32 from the least significant on, coefficients stand in reverse:
// bit 31 belongs to x^0 and bit 0 to x^31.
#include "container/format/part_checksum.h"

#include "container/format/checksum.h"

#include <array>

namespace container {
namespace {

constexpr std::uint32_t reversedPolynomial = 0xedb88320; // P without x^32
constexpr std::uint32_t one = 0x80000000;                // x^0

constexpr std::uint32_t timesX(std::uint32_t value) {
  return (value >> 1) ^ ((value & 1) != 0 ? reversedPolynomial : 0);
}

// The product modulo P: `left` is added once for each coefficient of `right`, multiplied by x between them.
constexpr std::uint32_t product(std::uint32_t left, std::uint32_t right) {
  std::uint32_t sum = 0;
  for (std::uint32_t coefficient = one; coefficient != 0; coefficient >>= 1) {
    sum ^= (right & coefficient) != 0 ? left : 0;
    left = timesX(left);
  }
  return sum;
}

// Element k is x^(8 * 2^k) modulo P: what 2^k more bytes multiply a checksum by.
constexpr std::array<std::uint32_t, 64> powersOfX = [] {
  std::array<std::uint32_t, 64> powers{};
  std::uint32_t power = one >> 8;
  for (std::uint32_t& element : powers) {
    element = power;
    power = product(power, power);
  }
  return powers;
}();

} // namespace

std::uint32_t continuedChecksum(std::uint32_t previous, const void* data, std::size_t bytes) {
  return crc32(previous, data, bytes);
}

std::uint32_t joinedChecksum(std::uint32_t first, std::uint32_t second, std::uint64_t secondBytes) {
  for (std::size_t k = 0; secondBytes != 0; ++k, secondBytes >>= 1) {
    if ((secondBytes & 1) != 0) {
      first = product(first, powersOfX[k]);
    }
  }
  return first ^ second;
}

} // namespace container
