// SPDX-License-Identifier: BSD-3-Clause
// SQLite's conventions for files: which text is a path, and how a file stores numbers. Internal to the container.
// The storage of numbers is described in https://www.sqlite.org/fileformat2.html
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace container {

/// The path in a form that SQLite cannot misread: "file:..." and ":memory:" have a meaning of their own to it, but with
/// a directory in front either is a path.
/// \param path  not empty
inline std::string plainPath(const std::string& path) {
  return path.front() == '/' ? path : "./" + path;
}

/// The number in `bytes` bytes, at most 8, most significant byte first.
inline std::uint64_t bigEndian(const unsigned char* at, std::size_t bytes) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < bytes; ++i) {
    number = (number << 8) | at[i];
  }
  return number;
}

/// Bytes per page, from the first 18 bytes of a file: 0 to 65536 for any content.
inline std::uint64_t pageBytesIn(const unsigned char* fileHead) {
  const std::uint64_t field = bigEndian(fileHead + 16, 2);
  return field == 1 ? 65536 : field;
}

} // namespace container
