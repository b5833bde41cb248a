// SPDX-License-Identifier: BSD-3-Clause
// Everything that a copy of a database has to keep.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace support {

/// The content of a small database, values as they are stored.
struct StoredContent {
  std::uint64_t records = 0;
  std::uint64_t blockRows = 0;
  std::vector<std::string> attributes; ///< every field of each description, in the order of the file
  std::map<std::string, std::vector<unsigned char>> values; ///< the bytes of all records, by attribute
  std::map<std::string, std::string> items;

  friend bool operator==(const StoredContent&, const StoredContent&) = default;
};

/// Reads a database of any version and encoding.
StoredContent storedContent(const std::string& path);

/// Writes a database again as a file of version 1, with checksums of its blocks.
void makeVersion1(const std::string& path);

} // namespace support
