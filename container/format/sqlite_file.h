// SPDX-License-Identifier: BSD-3-Clause
// SQLite's conventions for files: what it takes for a path, and how numbers stand in a file. Internal to this room.
// The numbers are told in https://www.sqlite.org/fileformat2.html
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace riegl::rdb::embedded {

/// The path in a form that SQLite takes for nothing else: "file:..." and ":memory:" may mean something to it, and with
/// a directory before it, either is a path.
/// \param path  not empty
inline std::string plainPath(const std::string& path) {
  return path.front() == '/' ? path : "./" + path;
}

/// The number in `bytes` bytes, at most 8, the most significant first.
inline std::uint64_t bigEndian(const unsigned char* at, std::size_t bytes) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < bytes; ++i) {
    number = (number << 8) | at[i];
  }
  return number;
}

/// Bytes of a page, from the first 18 bytes of a file; whatever stands there, 0 to 65536.
inline std::uint64_t pageBytesIn(const unsigned char* fileHead) {
  const std::uint64_t field = bigEndian(fileHead + 16, 2);
  return field == 1 ? 65536 : field;
}

} // namespace riegl::rdb::embedded
