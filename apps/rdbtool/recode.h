// SPDX-License-Identifier: BSD-3-Clause
// Copies databases to version 2 of the file, with another encoding of their blocks.
#pragma once

#include "container/write/writer.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

namespace rdbtool {

/// The options of a copy.
struct RecodeRequest {
  std::string input;
  std::string output;
  container::BlockEncoding encoding = container::BlockEncoding::raw;
  std::optional<std::uint32_t> blockRows; ///< records per block; as in the input if absent
};

/// Copies a database: the same attributes, stored values bit for bit, metadata items, and unless the request says
/// otherwise the same records per block. The output appears under its name when it is complete, and not at all after a
/// failure. Memory is bounded by half a gigabyte and one block of every column.
///
/// \param notes  receives a line where a load would read the output as other content than the input
/// \errors  ToolError: unreadable input, an output that is the input (wrong use); container::Error for a damaged input or an output that cannot be written
/// \threads one thread per request
void recode(const RecodeRequest& request, std::ostream& notes);

/// Rewrites a file of version 1 as version 2, with raw blocks.
///
/// \param output  as for recode(); empty to replace the input, which stays as it is until the new file is complete
/// \param notes   receives a line where there is nothing to do: a file of version 2 that would replace itself
/// \errors  as recode(); a file of version 2 with an output of its own is a failure
/// \threads one thread per file
void upgrade(const std::string& input, const std::string& output, std::ostream& notes);

} // namespace rdbtool
