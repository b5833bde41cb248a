// SPDX-License-Identifier: BSD-3-Clause
// The selected flaw of the broken client, and conversions that each break a rule.
#pragma once

#include "bench/in_memory/database.h"
#include "tests/support/element_conversion.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <set>
#include <string>
#include <type_traits>

namespace broken {

/// The name of the flaw; empty for a client without one. Initially the value of the environment variable
/// RDB_CONFORMANCE_FLAW.
inline std::string& flaw() {
  static std::string name = std::getenv("RDB_CONFORMANCE_FLAW") != nullptr // NOLINT(concurrency-mt-unsafe)
                                ? std::getenv("RDB_CONFORMANCE_FLAW")      // NOLINT(concurrency-mt-unsafe)
                                : "";
  return name;
}

inline bool has(const char* name) {
  return flaw() == name;
}

template <class To, class From>
To converted(From value) {
  if constexpr (std::is_floating_point_v<To> && std::is_floating_point_v<From>) {
    return has("floatsPassAsFloat32") ? static_cast<To>(static_cast<float>(value)) : static_cast<To>(value);
  } else if constexpr (std::is_floating_point_v<To>) {
    return static_cast<To>(value);
  } else {
    if constexpr (std::is_floating_point_v<From>) {
      if (has("fractionsAreCut")) {
        return support::converted<To>(std::trunc(value));
      }
      if (has("notANumberIsTheMost") && std::isnan(value)) {
        return std::numeric_limits<To>::max();
      }
    }
    if (has("integersWrap")) {
      return static_cast<To>(support::converted<std::int64_t>(value));
    }
    return has("integersPassAsFloat64") ? support::converted<To>(static_cast<double>(value))
                                        : support::converted<To>(value);
  }
}

inline bool hasFlawOfConversion() {
  static const std::set<std::string> names{"floatsPassAsFloat32",   "fractionsAreCut",
                                           "notANumberIsTheMost",   "integersWrap",
                                           "integersPassAsFloat64", "componentsAreApart"};
  return names.count(flaw()) != 0;
}

/// Writes `records` records of a column to `to`, from the record `first` on.
inline void writeRecords(const inMemory::Column& column, std::uint64_t first, std::uint64_t records, void* to,
                         unsigned toType) {
  if (!hasFlawOfConversion()) {
    const std::size_t recordBytes = support::elementBytes(column.type) * column.length;
    support::convertElements(column.bytes + first * recordBytes, column.type, to, toType,
                             records * column.length);
    return;
  }
  support::withElement(column.type, [&](auto stored) {
    support::withElement(toType, [&](auto requested) {
      for (std::uint64_t i = 0; i < records * column.length; ++i) {
        // Component after component in place of record after record.
        const std::uint64_t from = has("componentsAreApart") ? i % records * column.length + i / records : i;
        std::memcpy(&stored, column.bytes + (first * column.length + from) * sizeof(stored), sizeof(stored));
        requested = converted<decltype(requested)>(stored);
        std::memcpy(static_cast<unsigned char*>(to) + i * sizeof(requested), &requested, sizeof(requested));
      }
    });
  });
}

} // namespace broken
