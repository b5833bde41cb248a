// SPDX-License-Identifier: BSD-3-Clause
// A database of what few surveys have: long records, negative scales, infinities, gaps and the ends of integers.
#pragma once

#include "tests/container/database_file.h"

#include <array>
#include <cmath>
#include <limits>

namespace exampletest {

inline constexpr std::size_t recordsOfRareValues = 300;

/// `count` values, taken from a few in turn.
template <class T, std::size_t size>
std::vector<T> inTurn(const std::array<T, size>& values, std::size_t count) {
  std::vector<T> all;
  for (std::size_t i = 0; i < count; ++i) {
    all.push_back(values[i / 3 % size]);
  }
  return all;
}

/// Writes columns of rare values.
inline void writeRareValues(const std::string& path, const containertest::WriterSettings& settings) {
  using containertest::ElementType;
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  constexpr float infinite = std::numeric_limits<float>::infinity();
  constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
  const auto vectors = inTurn<std::int16_t, 3>({-32768, 7, 32767}, recordsOfRareValues * 17);
  const auto ends = inTurn<float, 5>({infinite, -0.0F, std::nanf("5"), -infinite, 1.5F}, recordsOfRareValues);
  const auto integers =
      inTurn<std::int64_t, 3>({least + 1, (1LL << 53) + 1, -(least + 3)}, recordsOfRareValues);
  auto gaps = inTurn<double, 1>({nan}, recordsOfRareValues * 16);
  gaps.back() = -0.0;
  containertest::Writer writer(path, settings);
  writer.addAttribute({"vectors", ElementType::int16, 17, -0.25, 3});
  writer.addAttribute({"ends", ElementType::float32, 1, -2, 1});
  writer.addAttribute({"integers", ElementType::int64});
  writer.addAttribute({"gaps", ElementType::float64, 16});
  writer.write(recordsOfRareValues, {vectors.data(), ends.data(), integers.data(), gaps.data()});
  writer.finish();
}

} // namespace exampletest
