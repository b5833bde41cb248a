// SPDX-License-Identifier: BSD-3-Clause
// Lines for people, on standard error.
#pragma once

#include "model/torvel/core/api.h"

#include <string>

namespace Torvel {

/// Collects a line and writes it when destroyed.
class TORVEL_API Console {
 public:
  Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  ~Console();
  Console& operator<<(const char* text);

 private:
  std::string line_;
};

} // namespace Torvel
