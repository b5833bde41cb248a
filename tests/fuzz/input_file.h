// SPDX-License-Identifier: BSD-3-Clause
// The input of a fuzz target as a file, for code that reads files.
#pragma once

#include "tests/fuzz/fuzz_target.h"
#include "tests/support/temp_dir.h"

#include <fstream>
#include <string>

namespace fuzz {

/// A folder of this process, removed when the process ends normally.
inline const support::TempDir& folder() {
  static const support::TempDir made;
  return made;
}

/// Writes the input to a file and returns its path, which is the same in every call.
inline std::string inputFile(const std::uint8_t* bytes, std::size_t count) {
  std::string path = folder().path("input");
  std::ofstream(path, std::ios::binary) << silentText(bytes, count);
  return path;
}

} // namespace fuzz
