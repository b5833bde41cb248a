// SPDX-License-Identifier: BSD-3-Clause
// What identifies a database file, and its tables; reader and writer share it. Internal to the container.
#pragma once

#include <array>
#include <cstdint>

namespace container {

inline constexpr std::uint32_t applicationId = 0x52444243;
inline constexpr std::int32_t formatVersion = 1;

struct TableColumns {
  const char* table;
  std::array<const char*, 9> columns; ///< null after the last
};

inline constexpr std::array<TableColumns, 4> tables{{
    {"database", {"records", "block_rows"}},
    {"attribute", {"id", "name", "type", "length", "scale", "offset", "unit", "title", "description"}},
    {"block", {"attribute", "number", "checksum", "data"}},
    {"metadata", {"name", "value"}},
}};

inline constexpr const char* schema = R"(
CREATE TABLE database (records INTEGER NOT NULL, block_rows INTEGER NOT NULL);
CREATE TABLE attribute(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE, type TEXT NOT NULL,
                       length INTEGER NOT NULL DEFAULT 1, scale REAL NOT NULL DEFAULT 1,
                       offset REAL NOT NULL DEFAULT 0, unit TEXT, title TEXT, description TEXT);
CREATE TABLE block    (attribute INTEGER NOT NULL REFERENCES attribute(id), number INTEGER NOT NULL,
                       checksum INTEGER, data BLOB NOT NULL, PRIMARY KEY (attribute, number));
CREATE TABLE metadata (name TEXT PRIMARY KEY, value TEXT NOT NULL);
)";

} // namespace container
