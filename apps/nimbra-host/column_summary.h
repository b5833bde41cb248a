// SPDX-License-Identifier: BSD-3-Clause
// A column in a few texts: first and last element, minimum and maximum of each component.
#pragma once

#include "model/nimbra/field.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace nimbrahost {

/// One component of a column. Minimum and maximum leave not-a-number out; "nan" where there is nothing else,
/// and empty where texts have no order. All four are empty for a column without elements.
struct ComponentSummary {
  std::string first, last, minimum, maximum;
};

/// A column over all its fragments.
struct ColumnSummary {
  std::string typeName; ///< empty for a field without an array
  std::uint64_t elementCount = 0;
  std::vector<ComponentSummary> components;
};

/// Reads every element once.
/// \param widestNumber  characters a number may take; a longer one is rounded to fit, if that is possible
ColumnSummary summarise(const Nimbra::Field& field, std::size_t widestNumber);

} // namespace nimbrahost
