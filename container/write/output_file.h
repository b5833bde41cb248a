// SPDX-License-Identifier: BSD-3-Clause
// The tables of a database file that is being made. Internal to the container.
#pragma once

#include "container/format/attribute.h"
#include "container/format/catalogue_text.h"
#include "container/write/temporary_file.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <sqlite3.h>
#include <string>

namespace container {

/// One transaction on a temporary file, which replaces the file at `path` when it is finished.
/// \errors Error (cannotWrite) from every operation if the system refuses, after which the file is of no further use
class OutputFile {
 public:
  /// Makes the temporary file with the empty tables of a version.
  OutputFile(const std::string& path, std::int32_t version);

  void insertAttribute(std::int64_t id, const Attribute& attribute);
  /// \param checksum  CRC-32 of the bytes, or nothing for a block without one
  void insertBlock(std::int64_t attribute, std::uint64_t number, const void* data, std::size_t bytes,
                   std::optional<std::uint32_t> checksum);
  void insertItem(const std::string& name, const std::string& value);
  /// The row of table `database` in version 1.
  void insertLayout(const DatabaseRow& layout);
  /// The same in version 2. \param extentChecksum  nothing where there are no extents
  void insertLayout(const DatabaseRow& layout, std::uint32_t catalogueChecksum,
                    std::optional<std::uint32_t> extentChecksum);
  void insertIndex(const BlockRow& block);
  void insertExtent(const ExtentRow& extent);
  /// Commits and puts the file in place; nothing else may be called after it.
  void finish();

  /// The path as it was given.
  const std::string& path() const { return shownPath; }

 private:
  struct Close {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
    void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
  };
  using Row = std::unique_ptr<sqlite3_stmt, Close>;

  void check(int status) const;
  void execute(const std::string& sql) const;
  Row prepare(const char* sql) const;

  std::string shownPath;
  TemporaryFile file;
  std::unique_ptr<sqlite3, Close> database;
  Row blockRow, indexRow, extentRow;
};

} // namespace container
