// SPDX-License-Identifier: BSD-3-Clause
// How a piece of work of rdbtool fails: one line of text, and the exit status that goes with it.
// The statuses are told to users in docs/rdbtool.md.
#pragma once

#include <stdexcept>
#include <string>

namespace rdbtool {

/// What the program hands back to its caller.
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

/// The content of an input is damaged or makes no sense: exit status 1.
inline ToolError failed(const std::string& text) {
  return {ExitStatus::failed, text};
}
/// The request itself makes no sense: exit status 2.
inline ToolError wrongUse(const std::string& text) {
  return {ExitStatus::wrongUse, text};
}
/// An input file is absent, no regular file, or refuses to be read: exit status 3.
inline ToolError unreadable(const std::string& text) {
  return {ExitStatus::unreadable, text};
}

} // namespace rdbtool
