// SPDX-License-Identifier: BSD-3-Clause
// One attribute of an open database, with the place of each of its blocks. Internal to the container.
#pragma once

#include "container/format/attribute.h"

#include <cstdint>
#include <vector>

namespace container {

/// What table `block_index` states of a block, in version 2.
struct IndexedBlock {
  std::uint64_t bytes = 0; ///< of the block as it is stored
  std::uint32_t checksum = 0;
  bool isEncoded = false; ///< in pieces; else the records as they are
};

/// An attribute's description, its id in the tables and the row id of each of its blocks.
struct Column {
  std::int64_t id = 0;
  Attribute attribute;
  std::vector<std::int64_t> blockRowIds; ///< by block number
  std::vector<IndexedBlock> index;       ///< by block number; none in version 1

  bool isEncoded(std::uint64_t block) const { return !index.empty() && index[block].isEncoded; }
};

} // namespace container
