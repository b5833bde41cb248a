// SPDX-License-Identifier: BSD-3-Clause
// Columns with given values, and the pattern of small numbers that most checks store.
#pragma once

#include "conformance/client.h"
#include "conformance/contents.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace conformance {

// The element types that a load asks for; a type without a number does not compile.
template <class T>
inline constexpr unsigned elementNumber = 0;
template <>
inline constexpr unsigned elementNumber<std::uint8_t> = 1;
template <>
inline constexpr unsigned elementNumber<std::uint16_t> = 3;
template <>
inline constexpr unsigned elementNumber<std::int16_t> = 4;
template <>
inline constexpr unsigned elementNumber<std::uint32_t> = 5;
template <>
inline constexpr unsigned elementNumber<std::int32_t> = 6;
template <>
inline constexpr unsigned elementNumber<std::uint64_t> = 7;
template <>
inline constexpr unsigned elementNumber<float> = 9;
template <>
inline constexpr unsigned elementNumber<double> = 10;

/// The number that `bind` is given for buffers of `T`.
template <class T>
riegl::rdb::pointcloud::DataType dataType() {
  static_assert(elementNumber<T> != 0, "no load asks for this element type");
  return static_cast<riegl::rdb::pointcloud::DataType>(elementNumber<T>);
}

/// A column that holds `values`, `length` of them per record.
template <class T>
Column columnOf(const std::string& name, const std::vector<T>& values, unsigned length = 1) {
  static_assert(elementNumber<T> != 0, "no load asks for this element type");
  Column column{name, static_cast<Element>(elementNumber<T>), length, {}};
  column.values.resize(values.size() * sizeof(T));
  if (!values.empty()) {
    std::memcpy(column.values.data(), values.data(), column.values.size());
  }
  return column;
}

/// The value of the pattern: 0 to 250, so that every element type holds it.
inline std::uint8_t pattern(std::uint64_t record, unsigned component) {
  return static_cast<std::uint8_t>((record * 7 + component * 3U) % 251);
}

/// A column that holds the pattern, from its record `first` on.
template <class T = std::uint8_t>
Column patternColumn(const std::string& name, std::uint64_t records, unsigned length = 1,
                     std::uint64_t first = 0) {
  std::vector<T> values;
  values.reserve(records * length);
  for (std::uint64_t record = 0; record < records; ++record) {
    for (unsigned component = 0; component < length; ++component) {
      values.push_back(static_cast<T>(pattern(first + record, component)));
    }
  }
  return columnOf(name, values, length);
}

} // namespace conformance
