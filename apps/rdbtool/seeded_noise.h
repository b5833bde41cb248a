// SPDX-License-Identifier: BSD-3-Clause
// Random numbers from a seed, and sines, with equal bits on every machine: only arithmetic of IEEE doubles and 64-bit
// integers, compiled without contraction.
#pragma once

#include <cstdint>

namespace rdbtool {

/// Mixes 64 bits so that each bit of the result depends on every bit of the argument.
constexpr std::uint64_t mixBits(std::uint64_t bits) {
  bits += 0x9E3779B97F4A7C15U;
  bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9U;
  bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBU;
  return bits ^ (bits >> 31);
}

/// The same for an index in a sequence or a plane.
constexpr std::uint64_t mixBits(std::uint64_t seed, std::uint64_t first, std::uint64_t second = 0) {
  return mixBits(mixBits(mixBits(seed) ^ first) ^ second);
}

/// A number in [0, 1) from the upper 53 bits.
constexpr double unitInterval(std::uint64_t bits) {
  return static_cast<double>(bits >> 11) * 0x1p-53;
}

/// A number in [-1, 1) with a triangular distribution and a variance of 1/6.
constexpr double peaked(std::uint64_t bits) {
  return static_cast<double>(bits >> 32) * 0x1p-32 + static_cast<double>(bits & 0xFFFFFFFFU) * 0x1p-32 - 1;
}

/// The sine of an angle in turns, to 1e-13; |turns| below 1e9.
constexpr double sineOfTurns(double turns) {
  double rest = turns - static_cast<double>(static_cast<std::int64_t>(turns + (turns < 0 ? -0.5 : 0.5)));
  if (rest > 0.25) {
    rest = 0.5 - rest;
  } else if (rest < -0.25) {
    rest = -0.5 - rest;
  }
  const double angle = rest * 6.283185307179586476925;
  const double square = angle * angle;
  double sum = 1.0 / 355687428096000.0;
  sum = sum * square - 1.0 / 1307674368000.0;
  sum = sum * square + 1.0 / 6227020800.0;
  sum = sum * square - 1.0 / 39916800.0;
  sum = sum * square + 1.0 / 362880.0;
  sum = sum * square - 1.0 / 5040.0;
  sum = sum * square + 1.0 / 120.0;
  sum = sum * square - 1.0 / 6.0;
  return angle + angle * square * sum;
}

/// The cosine, by the same series.
constexpr double cosineOfTurns(double turns) {
  return sineOfTurns(turns + 0.25);
}

} // namespace rdbtool
