// SPDX-License-Identifier: BSD-3-Clause
// The words in which a check says what it expects; a failed one ends the check of its promise.
#pragma once

#include "conformance/client.h"

#include <concepts>
#include <exception>
#include <optional>
#include <sstream>
#include <string>

namespace conformance {

/// Raised where a promise is broken. No `std::exception`, so that no handler for those takes it.
struct Broken {
  std::string expectation;
  std::string finding;
};

/// Readable form of a value; long texts are shortened.
inline std::string text(bool value) {
  return value ? "true" : "false";
}
inline std::string text(const std::string& value) {
  constexpr std::size_t longest = 60;
  if (value.size() <= longest) {
    return "\"" + value + "\"";
  }
  return "\"" + value.substr(0, longest) + "...\" (" + std::to_string(value.size()) + " bytes)";
}
inline std::string text(const char* value) {
  return text(std::string(value));
}
template <std::integral T>
std::string text(T value) {
  return std::to_string(value);
}
template <std::floating_point T>
std::string text(T value) {
  std::ostringstream stream;
  stream.precision(17);
  stream << value;
  return stream.str();
}

inline void expect(bool holds, const std::string& expectation, const std::string& finding) {
  if (!holds) {
    throw Broken{expectation, finding};
  }
}

template <class Found, class Expected>
void expectEqual(const std::string& what, const Found& found, const Expected& expected) {
  expect(found == expected, what + ": " + text(expected), text(found));
}

/// The texts of an error; nothing where the client gave a null pointer.
struct ErrorTexts {
  std::optional<std::string> what;
  std::optional<std::string> details;
};

inline ErrorTexts textsOf(const riegl::rdb::Error& error) {
  const auto textOf = [](const char* given) {
    return given == nullptr ? std::nullopt : std::optional<std::string>(given);
  };
  return {textOf(error.what()), textOf(error.details())};
}

/// Expects that `action` raises riegl::rdb::Error, and returns its texts.
template <class Action>
ErrorTexts expectError(const std::string& what, Action action) {
  std::string finding = "no exception";
  try {
    action();
  } catch (const riegl::rdb::Error& error) {
    return textsOf(error);
  } catch (const std::exception& error) {
    finding = std::string("another exception: ") + error.what();
  }
  throw Broken{what + " raises riegl::rdb::Error", finding};
}

} // namespace conformance
