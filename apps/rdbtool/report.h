// SPDX-License-Identifier: BSD-3-Clause
// The output of `info` and `verify`: the description of a database, and the findings of a check.
#pragma once

#include <iosfwd>
#include <string>

namespace rdbtool {

/// Prints records, block size, attributes and metadata items; as one JSON object where `json` is set.
///
/// \errors  ToolError (unreadable); container::Error for a file that is not a valid database
void describe(const std::string& path, bool json, std::ostream& out);

/// Checks all blocks and prints every finding, then a summary.
///
/// \return  whether there was no finding
/// \errors  ToolError (unreadable); a file that is not a database is a finding
bool verifyDatabase(const std::string& path, std::ostream& out);

} // namespace rdbtool
