// SPDX-License-Identifier: BSD-3-Clause
// Reads a whole file.
#pragma once

#include <fstream>
#include <iterator>
#include <string>

namespace support {

/// All bytes of a file; empty where the file doesn't exist.
inline std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

} // namespace support
