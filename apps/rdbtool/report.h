// SPDX-License-Identifier: BSD-3-Clause
// What rdbtool tells of a database: its description, and the findings of a check.
#pragma once

#include <iosfwd>
#include <string>

namespace rdbtool {

/// Prints records, block size, attributes and metadata items; as one JSON object where `json` is set.
///
/// \errors  ToolError (unreadable); container::Error for a file that is no sound database
void describe(const std::string& path, bool json, std::ostream& out);

/// Prints every finding of a check of all blocks, and a summary; true where there was none.
///
/// \errors  ToolError (unreadable); a file that is no database at all is a finding
bool verifyDatabase(const std::string& path, std::ostream& out);

} // namespace rdbtool
