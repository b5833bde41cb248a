// SPDX-License-Identifier: BSD-3-Clause
// Writes databases anew, with other encodings of their blocks or in another version of the format.
#pragma once

#include "container/write/writer.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace rdbtool {

/// The options of a copy.
struct RecodeRequest {
  std::string input;
  std::string output;
  std::optional<std::uint32_t> blockRows; ///< as the input if absent
  container::WriterSettings writer;       ///< its records per block are not used
};

/// Copies a database: the same attributes, stored values and items, encoded as the request wants. Input and output may
/// be one file, which is replaced at the end. Memory is bounded by a block of all columns.
///
/// \errors  ToolError; container::Error for a damaged input or an output that cannot be written
/// \threads one thread per request
void recode(const RecodeRequest& request);

/// Rewrites each file of version 1 in place as version 2, with raw blocks.
///
/// \param notes  receives one line for each file
/// \errors  as recode(); files before the one that failed are done
void upgrade(const std::vector<std::string>& files, std::ostream& notes);

} // namespace rdbtool
