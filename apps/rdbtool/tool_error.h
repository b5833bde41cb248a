// SPDX-License-Identifier: BSD-3-Clause
// Failures of rdbtool: one line of text and an exit status, which docs/rdbtool.md lists.
#pragma once

#include <stdexcept>
#include <string>

namespace rdbtool {

/// The exit status of the program.
enum class ExitStatus { done = 0, failed = 1, wrongUse = 2, unreadable = 3 };

/// A failure whose text names the object, what was expected of it and what was found.
class ToolError : public std::runtime_error {
 public:
  ToolError(ExitStatus wantedStatus, const std::string& text)
      : std::runtime_error(text), exitStatus(wantedStatus) {}
  ExitStatus status() const noexcept { return exitStatus; }

 private:
  ExitStatus exitStatus;
};

/// The content of an input is damaged or invalid: exit status 1.
inline ToolError failed(const std::string& text) {
  return {ExitStatus::failed, text};
}
/// The command line is wrong: exit status 2.
inline ToolError wrongUse(const std::string& text) {
  return {ExitStatus::wrongUse, text};
}
/// An input file is missing, is not a regular file, or cannot be read: exit status 3.
inline ToolError unreadable(const std::string& text) {
  return {ExitStatus::unreadable, text};
}

} // namespace rdbtool
