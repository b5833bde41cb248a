// SPDX-License-Identifier: BSD-3-Clause
// Catches what the process writes to its console while a test runs.
#pragma once

#include "model/torvel/core/speak_ptr.h"

#include <mutex>
#include <string>
#include <vector>

namespace support {

/// While it lives, console lines and reports go here instead of standard error.
class ConsoleLines {
 public:
  ConsoleLines() : before(Torvel::setLineSink([this](const std::string& line) { caught.push_back(line); })) {}
  ConsoleLines(const ConsoleLines&) = delete;
  ConsoleLines& operator=(const ConsoleLines&) = delete;
  ~ConsoleLines() { Torvel::setLineSink(before); }

  const std::vector<std::string>& lines() const { return caught; }

 private:
  std::vector<std::string> caught;
  Torvel::LineSink before;
};

} // namespace support
