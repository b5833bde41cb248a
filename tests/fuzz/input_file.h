// SPDX-License-Identifier: BSD-3-Clause
// The input of a fuzz target as a file, for code that reads files.
#pragma once

#include "tests/fuzz/fuzz_target.h"
#include "tests/support/temp_dir.h"

#include <fstream>
#include <string>

namespace fuzz {

/// The process's own folder; it goes when the process ends as it should.
inline const support::TempDir& folder() {
  static const support::TempDir made;
  return made;
}

/// Writes the input to one and the same path and hands that back.
inline std::string inputFile(const std::uint8_t* bytes, std::size_t count) {
  std::string path = folder().path("input");
  std::ofstream(path, std::ios::binary) << silentText(bytes, count);
  return path;
}

} // namespace fuzz
