// SPDX-License-Identifier: BSD-3-Clause
// Writes the collected line when the statement ends.
#include "model/torvel/objects/console.h"

namespace Torvel {

Console::~Console() {
  try {
    writeLine(line);
  } catch (...) { // NOLINT(bugprone-empty-catch): a destructor must not raise
  }
}

Console& Console::operator<<(const char* text) {
  line += text;
  return *this;
}

} // namespace Torvel
