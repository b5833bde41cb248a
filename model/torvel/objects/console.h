// SPDX-License-Identifier: BSD-3-Clause
// One line of text for whoever watches the process.
#pragma once

#include "model/torvel/core/speak_ptr.h"

#include <string>

namespace Torvel {

/// A temporary that collects text and writes it as one line when it dies at the end of the statement. The
/// line goes to standard error, or to the sink that the host has set with `setLineSink`. Text with line
/// breaks of its own is still one entry.
///
/// \threads lines of several threads do not mix
class TORVEL_API Console {
 public:
  Console() = default;
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  ~Console();

  Console& operator<<(const char* text);

 private:
  std::string line;
};

} // namespace Torvel
