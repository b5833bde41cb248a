// SPDX-License-Identifier: BSD-3-Clause
// Damages a database on purpose, in place, so that tests can see it noticed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace rdbtool {

/// What to damage; all that is given is done, in this order.
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
};

/// Does what is asked for, in place; what was done before a failure stays done.
///
/// \errors  ToolError: wrong use where nothing is to be damaged or no attribute is named for a block;
///          unreadable where there is no such file; failed where the place to damage does not exist
void damage(const DamageRequest& request);

} // namespace rdbtool
