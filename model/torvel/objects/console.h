// SPDX-License-Identifier: BSD-3-Clause
// One line of text on the console of the process.
#pragma once

#include "model/torvel/core/speak_ptr.h"

#include <string>

namespace Torvel {

/// A temporary that collects text and writes it as one line when it is destroyed at the end of the statement.
/// The line goes to standard error, or to the sink that the host has set with `setLineSink`. Text that
/// contains line breaks is written in one call.
///
/// \errors  the destructor raises nothing: a line that can't be written is lost
/// \threads safe on distinct objects; lines of several threads do not mix
class TORVEL_API Console {
 public:
  Console() = default;
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  ~Console();

  /// Appends `text`.
  /// \errors  std::bad_alloc
  Console& operator<<(const char* text);

 private:
  std::string line;
};

} // namespace Torvel
