// SPDX-License-Identifier: BSD-3-Clause
// Summary of a column: first and last element, minimum and maximum of each component, as texts.
#pragma once

#include "model/nimbra/field.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace nimbrahost {

/// One component of a column. Minimum and maximum ignore not-a-number; they are "nan" where there is no other value,
/// and empty for strings. All four are empty for a column without elements.
struct ComponentSummary {
  std::string first, last, minimum, maximum;
};

/// All fragments of a column together.
struct ColumnSummary {
  std::string typeName; ///< empty for a field without an array
  std::uint64_t elementCount = 0;
  std::vector<ComponentSummary> components;
};

/// Reads every element once.
/// \param widestNumber  characters per number; a longer number is rounded to fit if possible
ColumnSummary summarise(const Nimbra::Field& field, std::size_t widestNumber);

} // namespace nimbrahost
