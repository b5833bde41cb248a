// SPDX-License-Identifier: BSD-3-Clause
// The catalogue of a file that is being made: its rows, their order and their checksums. Internal to the container.
#pragma once

#include "container/format/attribute.h"
#include "container/format/extent.h"
#include "container/write/output_file.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace container {

/// What the catalogue has to know of a block that was inserted.
struct WrittenBlock {
  bool isEncoded = false;
  std::uint32_t checksum = 0;
  std::uint64_t bytes = 0;
  std::vector<ComponentExtent> extents;
};

/// An attribute and its blocks, by number.
struct WrittenColumn {
  Attribute attribute;
  std::vector<WrittenBlock> blocks;
};

/// Inserts the catalogue of version 2: attributes with ids from 1 on, items, list of blocks, extents, and at last both
/// checksums.
/// \errors  as OutputFile
void insertCatalogue(OutputFile& file, const DatabaseRow& layout,
                     const std::vector<const WrittenColumn*>& columns,
                     const std::map<std::string, std::string>& items);

} // namespace container
