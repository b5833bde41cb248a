// SPDX-License-Identifier: BSD-3-Clause
// What identifies a database file, and its tables; reader and writer share it. Internal to the container.
#pragma once

#include <array>
#include <cstdint>

namespace container {

inline constexpr std::uint32_t applicationId = 0x52444243;
inline constexpr std::int32_t firstVersion = 1;  ///< blocks as they are, catalogue without a checksum
inline constexpr std::int32_t newestVersion = 2; ///< a checksum of the catalogue, encoded blocks, extents

/// The bytes that the names and values of all metadata items may have together in version 2.
inline constexpr std::uint64_t mostMetadataBytes = std::uint64_t{32} << 20;
/// The encoding of a block in pieces, as table `block_index` names it.
inline constexpr const char* piecesEncoding = "pieces";

struct TableColumns {
  const char* table;
  std::array<const char*, 9> columns; ///< null after the last
};

/// The tables of every version.
inline constexpr std::array<TableColumns, 4> tables{{
    {"database", {"records", "block_rows"}},
    {"attribute", {"id", "name", "type", "length", "scale", "offset", "unit", "title", "description"}},
    {"block", {"attribute", "number", "checksum", "data"}},
    {"metadata", {"name", "value"}},
}};

/// What version 2 has besides: columns of the first table, and two tables.
inline constexpr std::array<TableColumns, 3> tablesOfVersion2{{
    {"database", {"catalogue_checksum", "extent_checksum"}},
    {"block_index", {"attribute", "number", "encoding", "checksum", "bytes"}},
    {"extent", {"attribute", "number", "component", "minimum", "maximum", "missing"}},
}};

inline constexpr const char* schemaOfVersion1 =
    "CREATE TABLE database (records INTEGER NOT NULL, block_rows INTEGER NOT NULL);";

inline constexpr const char* schemaOfVersion2 = R"(
CREATE TABLE database (records INTEGER NOT NULL, block_rows INTEGER NOT NULL,
                       catalogue_checksum INTEGER NOT NULL, extent_checksum INTEGER);
CREATE TABLE block_index(attribute INTEGER NOT NULL, number INTEGER NOT NULL, encoding TEXT,
                         checksum INTEGER NOT NULL, bytes INTEGER NOT NULL,
                         PRIMARY KEY(attribute, number)) WITHOUT ROWID;
CREATE TABLE extent   (attribute INTEGER NOT NULL, number INTEGER NOT NULL, component INTEGER NOT NULL,
                       minimum REAL, maximum REAL, missing INTEGER NOT NULL,
                       PRIMARY KEY(attribute, number, component)) WITHOUT ROWID;
)";

inline constexpr const char* schemaOfAllVersions = R"(
CREATE TABLE attribute(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE, type TEXT NOT NULL,
                       length INTEGER NOT NULL DEFAULT 1, scale REAL NOT NULL DEFAULT 1,
                       offset REAL NOT NULL DEFAULT 0, unit TEXT, title TEXT, description TEXT);
CREATE TABLE block    (attribute INTEGER NOT NULL REFERENCES attribute(id), number INTEGER NOT NULL,
                       checksum INTEGER, data BLOB NOT NULL, PRIMARY KEY (attribute, number));
CREATE TABLE metadata (name TEXT PRIMARY KEY, value TEXT NOT NULL);
)";

} // namespace container
