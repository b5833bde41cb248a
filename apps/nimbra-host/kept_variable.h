// SPDX-License-Identifier: BSD-3-Clause
// Keeps an environment variable as it was over a call that changes it.
#pragma once

#include <optional>
#include <string>

namespace nimbrahost {

/// Gives an environment variable back its value, or unsets it again, when the object ends.
/// \threads not thread-safe: no other thread may use the environment when the object begins or ends
class KeptVariable {
 public:
  explicit KeptVariable(const char* variable);
  KeptVariable(const KeptVariable&) = delete;
  KeptVariable& operator=(const KeptVariable&) = delete;
  ~KeptVariable();

 private:
  std::string name;
  std::optional<std::string> value;
};

} // namespace nimbrahost
