// SPDX-License-Identifier: BSD-3-Clause
// Checks of option values as typed: each returns an empty text for a good value, otherwise what is wrong with it.
#pragma once

#include <charconv>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace apps {

/// The number that a whole text stands for; nothing where the text is not a number or has other characters in it.
/// Leading zeros are accepted and have no meaning.
template <class Number>
std::optional<Number> wholeNumber(std::string_view text) {
  Number number{};
  const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
  return problem == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

/// Refuses what an option parser would convert in its own way: a minus sign wraps around, a leading zero means
/// octal, a number that is too large becomes the largest, an empty text becomes nothing.
template <class Number>
std::string decimalProblem(const std::string& text) {
  using Limits = std::numeric_limits<Number>;
  Number number{};
  const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (problem == std::errc::result_out_of_range && end == text.data() + text.size()) {
    return "expected a whole number from " + std::to_string(Limits::min()) + " to " +
           std::to_string(Limits::max()) + ", found " + text;
  }
  const bool decimal = problem == std::errc() && std::to_string(number) == text;
  return decimal ? "" : "expected a whole number, found " + text;
}

/// Refuses the empty text.
inline std::string pathProblem(const std::string& text) {
  return text.empty() ? "expected the path of a file, found an empty text" : "";
}

} // namespace apps
