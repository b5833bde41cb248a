// SPDX-License-Identifier: BSD-3-Clause
// Collects the console lines of the process during a test.
#pragma once

#include "model/torvel/core/speak_ptr.h"

#include <mutex>
#include <string>
#include <vector>

namespace support {

/// Collects console lines and reports, instead of standard error, while it lives.
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
