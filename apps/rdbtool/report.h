// SPDX-License-Identifier: BSD-3-Clause
// The output of `info` and `verify`: the description of a database, and the findings of a check.
#pragma once

#include <iosfwd>
#include <string>

namespace rdbtool {

/// Prints version, size, records and block size, the attributes with their encodings and extents, and the metadata items;
/// as one JSON object where `json` is set. Of the blocks it reads the head of at most one per attribute.
///
/// \errors  ToolError (unreadable); container::Error for a file that is not a valid database
void describe(const std::string& path, bool json, std::ostream& out);

/// Checks catalogue, blocks, metadata items and extents and prints every finding, then a summary, which names what the
/// file has no checksum for.
///
/// \return  whether there was no finding
/// \errors  ToolError (unreadable); a file that is not a database is a finding
bool verifyDatabase(const std::string& path, std::ostream& out);

} // namespace rdbtool
