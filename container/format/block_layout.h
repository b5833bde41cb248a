// SPDX-License-Identifier: BSD-3-Clause
// How the records of a database are divided into blocks.
#pragma once

#include <algorithm>
#include <cstdint>

namespace container {

/// The division of all records into blocks; the same for every column.
struct BlockLayout {
  std::uint64_t records = 0;
  std::uint64_t blockRows = 1;

  std::uint64_t blockCount() const { return records / blockRows + (records % blockRows != 0 ? 1 : 0); }
  std::uint64_t firstRow(std::uint64_t block) const { return block * blockRows; }
  std::uint64_t rows(std::uint64_t block) const { return std::min(blockRows, records - firstRow(block)); }
};

} // namespace container
