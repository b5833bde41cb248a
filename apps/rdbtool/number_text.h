// SPDX-License-Identifier: BSD-3-Clause
// Numbers as rdbtool prints them.
#pragma once

#include <charconv>
#include <cmath>
#include <string>

namespace rdbtool {

/// The shortest text that reads back to the same number; "nan", "inf" or "-inf" for what is none.
inline std::string numberText(double value) {
  if (std::isnan(value)) {
    return "nan"; // whatever its sign
  }
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

} // namespace rdbtool
