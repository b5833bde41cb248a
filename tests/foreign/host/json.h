// SPDX-License-Identifier: BSD-3-Clause
// Writes numbers, texts and elements as JSON.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace json {

/// Components of one C++ type. The kind is the name of that type, as "unsigned char".
struct Layout {
  std::string kind; // the name to print: that of the component, or point, vector, rgba
  std::string component;
  int components = 1;
};

std::string text(std::string_view value);
/// All elements as a list. Several components are lists in it. Null for an unknown component.
std::string list(const Layout& layout, const void* elements, std::uint64_t count);

} // namespace json
