// SPDX-License-Identifier: BSD-3-Clause
// The bytes of a file, as a test compares them.
#pragma once

#include <fstream>
#include <iterator>
#include <string>

namespace support {

/// All bytes of a file; empty where there is none.
inline std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

} // namespace support
