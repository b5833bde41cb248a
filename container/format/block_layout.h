// SPDX-License-Identifier: BSD-3-Clause
// How the records of one column lie in blocks, and where the blocks are. Internal to this room.
#pragma once

#include "container/format/stored_type.h"
#include "platform/client/point_attribute.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace riegl::rdb::embedded {

/// The division of all records into blocks; the same for every column.
struct BlockLayout {
  std::uint64_t records = 0;
  std::uint64_t blockRows = 1;

  std::uint64_t blockCount() const { return records / blockRows + (records % blockRows != 0 ? 1 : 0); }
  std::uint64_t firstRow(std::uint64_t block) const { return block * blockRows; }
  std::uint64_t rows(std::uint64_t block) const { return std::min(blockRows, records - firstRow(block)); }
};

/// One attribute of the file, and the row of each of its blocks.
struct Column {
  std::int64_t id = 0;
  pointcloud::PointAttribute attribute;
  StoredType type = StoredType::float64;
  std::vector<std::int64_t> blockRowIds;

  std::uint64_t recordBytes() const { return std::uint64_t{attribute.length} * byteSize(type); }
  bool isStoredAsIs() const { return attribute.scale == 1 && attribute.offset == 0; }
};

} // namespace riegl::rdb::embedded
