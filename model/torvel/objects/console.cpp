// SPDX-License-Identifier: BSD-3-Clause
// Writes the collected line at the end of a statement.
#include "model/torvel/objects/console.h"

namespace Torvel {

Console::~Console() {
  try {
    writeLine(line);
  } catch (...) { // NOLINT(bugprone-empty-catch): a line that can't be written must not end the work
  }
}

Console& Console::operator<<(const char* text) {
  line += text;
  return *this;
}

} // namespace Torvel
