// SPDX-License-Identifier: BSD-3-Clause
// Numbers as the programs print them.
#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <string>

namespace apps {

/// The shortest text that reads back to the same number; "nan" (whatever its sign), "inf" or "-inf" otherwise.
inline std::string numberText(double value) {
  if (std::isnan(value)) {
    return "nan";
  }
  std::array<char, 32> text;
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

/// A finite number with so many digits after the decimal point, whatever the locale.
inline std::string fixedText(double value, int digits) {
  std::array<char, 400> text;
  return {text.data(),
          std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, digits).ptr};
}

} // namespace apps
