// SPDX-License-Identifier: BSD-3-Clause
// The description of one attribute, as the catalogue of a database holds it.
#pragma once

#include "container/format/element_type.h"

#include <string>

namespace container {

/// The most values per record of one attribute.
inline constexpr unsigned int maximumLength = 65536;

/// One attribute: a column of `length` values per record.
struct Attribute {
  std::string name; ///< unique in the database, not empty
  ElementType type = ElementType::float64;
  unsigned int length = 1; ///< values per record, 1 to maximumLength
  double scale = 1;        ///< a value is stored x scale + offset; finite, not 0
  double offset = 0;       ///< finite
  std::string unit{};      ///< such as "m"; may be empty, as the texts below
  std::string title{};
  std::string description{};

  std::size_t recordBytes() const { return length * byteSize(type); }
  /// Whether the stored values are the values themselves.
  bool isStoredAsIs() const { return scale == 1 && offset == 0; }
};

/// The integers that stored values of a real type were made from: stored value = integer x scale + offset.
struct SourceScaling {
  double scale = 1;
  double offset = 0;
};

} // namespace container
