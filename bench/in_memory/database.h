// SPDX-License-Identifier: BSD-3-Clause
// The databases of the in-memory client.
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace inMemory {

/// One column: records of `length` elements of the type with the number `type`.
struct Column {
  const unsigned char* bytes = nullptr; ///< not owned
  unsigned type = 0;
  unsigned length = 1;
};

struct Database {
  std::map<std::string, Column> columns{};
  std::uint64_t records = 0;
  std::map<std::string, std::string> items{}; ///< metadata
};

/// By the path that opens them. Filled before the first load; no database is ever removed.
inline std::map<std::string, Database>& databases() {
  static std::map<std::string, Database> all;
  return all;
}

} // namespace inMemory
