// SPDX-License-Identifier: BSD-3-Clause
// Changes an environment variable for the length of a scope.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace support {

/// An environment variable that is another one, or unset, while the object lives.
class ChangedVariable {
 public:
  ChangedVariable(const char* variable, const std::optional<std::string>& value) : name(variable) {
    if (const char* const present = std::getenv(variable)) {
      before = present;
    }
    set(value);
  }
  ChangedVariable(const ChangedVariable&) = delete;
  ChangedVariable& operator=(const ChangedVariable&) = delete;
  ~ChangedVariable() { set(before); }

 private:
  void set(const std::optional<std::string>& value) const {
    value ? setenv(name, value->c_str(), 1) : unsetenv(name);
  }

  const char* name;
  std::optional<std::string> before;
};

} // namespace support
