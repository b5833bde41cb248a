// SPDX-License-Identifier: BSD-3-Clause
// Damages a database on purpose, in place, so that tests can check that it is noticed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace container {

/// What to damage. All changes that are given are made, in this order.
struct DamageRequest {
  std::string file;
  // One block: `attribute` names its column, `block` counts from 0.
  std::string attribute;
  std::int64_t block = 0;
  std::optional<std::uint64_t> flipByte;     // all bits of this byte of the block
  std::optional<std::uint64_t> shortenBytes; // this many bytes off the end of the block
  bool clearChecksum = false;                // as a writer without checksums leaves it
  bool dropBlock = false;
  std::optional<std::string> storedType; // the attribute's type text
  // The whole database.
  std::optional<std::int64_t> records;
  std::optional<std::int64_t> blockRows;
  std::optional<std::int64_t> applicationId;
  std::optional<std::int64_t> version;
  std::optional<std::string> dropTable;
  // The file under it.
  std::optional<std::uint64_t> flipFileByte;
  std::optional<std::uint64_t> truncateBytes; // what is left of the file

  // Whether there is a change of one block, of other tables, of the file, or one that needs `attribute`.
  bool changesBlock() const;
  bool changesTables() const;
  bool changesFile() const;
  bool needsAttribute() const;
  /// Whether the table to drop is none of a database's.
  bool dropsUnknownTable() const;
};

/// Makes the changes in place; those made before a failure stay.
///
/// \errors  Error: wrongUse if there is no change, no attribute for a change that needs one, or an unknown table;
///          cannotOpen if there is no such file; damaged if the place of a change does not exist; cannotWrite if the
///          file cannot be changed
void damage(const DamageRequest& request);

} // namespace container
