// SPDX-License-Identifier: BSD-3-Clause
// An element as text: the shortest form that reads back to the same value.
#pragma once

#include "arrays/nimbra/element_records.h"

#include <array>
#include <charconv>
#include <string>

namespace Nimbra {

/// Appends a number as std::to_chars writes it without format and precision.
/// \errors  std::bad_alloc
template <class Scalar>
void appendNumber(std::string& text, Scalar value) {
  // The longest text is that of a double such as -1.7976931348623157e+308, with 24 characters.
  std::array<char, 40> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  text.append(digits.data(), end);
}

/// \return the element as text, its components separated by one blank
/// \errors  std::bad_alloc
template <class T>
std::string elementAsText(const T& element) {
  std::string text;
  if constexpr (componentCount<T> == 1) {
    appendNumber(text, element);
  } else {
    for (const auto component : element) {
      if (!text.empty()) {
        text += ' ';
      }
      appendNumber(text, component);
    }
  }
  return text;
}

} // namespace Nimbra
