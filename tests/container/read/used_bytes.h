// SPDX-License-Identifier: BSD-3-Clause
// Which bytes of a database file are in use, so that damage to them is damage to content.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace containertest {

/// Positions in a file, without the gaps that SQLite leaves in its pages.
struct UsedBytes {
  std::size_t pageBytes = 0;
  std::vector<std::size_t> blocks;    ///< rows of table `block`
  std::vector<std::size_t> catalogue; ///< all else: file header, schema, catalogue, items, indices
};

/// \errors std::runtime_error where SQLite cannot tell; the file must have no free pages
UsedBytes usedBytesOf(const std::string& path);

} // namespace containertest
