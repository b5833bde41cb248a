// SPDX-License-Identifier: BSD-3-Clause
// A buffer to bind, between guard bytes that show every write outside it.
#pragma once

#include "conformance/checks.h"
#include "conformance/pattern.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace conformance {

/// Room for `records` records of `length` elements, filled with one byte that no check stores.
template <class T>
class GuardedBuffer {
 public:
  explicit GuardedBuffer(std::uint64_t recordCount, unsigned valuesPerRecord = 1)
      : elements(recordCount * valuesPerRecord), length(valuesPerRecord),
        bytes(elements * sizeof(T) + 2 * guardBytes, guard) {}

  T* data() { return reinterpret_cast<T*>(bytes.data() + guardBytes); }
  T operator[](std::uint64_t index) const {
    T value;
    std::memcpy(&value, bytes.data() + guardBytes + index * sizeof(T), sizeof(T));
    return value;
  }

  /// As it was made.
  void refill() { std::fill(bytes.begin(), bytes.end(), guard); }

  /// Expects the pattern from its record `first` on in the first `records` records.
  void expectPattern(std::uint64_t first, std::uint64_t records) const {
    for (std::uint64_t i = 0; i < records * length; ++i) {
      const auto component = static_cast<unsigned>(i % length);
      const auto expected = static_cast<T>(pattern(first + i / length, component));
      if ((*this)[i] != expected) {
        expectEqual("record " + std::to_string(first + i / length) + ", value " + std::to_string(component) +
                        ", at index " + std::to_string(i) + " of the bound buffer",
                    (*this)[i], expected);
      }
    }
  }

  /// Expects that nothing but the first `records` records was written.
  void expectUntouchedBehind(std::uint64_t records) const {
    const std::size_t written = records * length * sizeof(T);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const bool inside = i >= guardBytes && i < guardBytes + written;
      if (!inside && bytes[i] != guard) {
        const auto offset = static_cast<long long>(i) - static_cast<long long>(guardBytes);
        throw Broken{"nothing is written outside the first " + std::to_string(records) +
                         " records of the buffer (" + std::to_string(written) + " bytes)",
                     "byte " + std::to_string(offset) + " counted from the buffer's start is written"};
      }
    }
  }

 private:
  static constexpr std::size_t guardBytes = 16384;
  static constexpr unsigned char guard = 0xFB; // 251, one more than the pattern has

  std::size_t elements;
  unsigned length;
  std::vector<unsigned char> bytes;
};

} // namespace conformance
