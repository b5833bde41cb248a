// SPDX-License-Identifier: BSD-3-Clause
// Converts records and writes them to the caller's buffer.
#include "container/read/target.h"

#include <algorithm>
#include <cstring>

namespace container {
namespace {

void scatter(const unsigned char* from, const Target& target, unsigned char* to, std::size_t rows) {
  for (std::size_t row = 0; row < rows; ++row) {
    std::memcpy(to + row * target.stride, from + row * target.recordBytes, target.recordBytes);
  }
}

} // namespace

void deliver(const unsigned char* records, const Target& target, unsigned char* to, std::size_t rows,
             std::vector<unsigned char>& converted) {
  if (target.conversion != nullptr) {
    if (!target.isTight()) {
      converted.resize(std::max(converted.size(), rows * target.recordBytes));
    }
    const Attribute& attribute = target.column->attribute;
    unsigned char* const result = target.isTight() ? to : converted.data();
    target.conversion(records, result, rows * attribute.length, attribute.scale, attribute.offset);
    records = result;
  }
  if (!target.isTight()) {
    scatter(records, target, to, rows);
  } else if (target.conversion == nullptr) {
    std::memcpy(to, records, rows * target.recordBytes);
  }
}

} // namespace container
