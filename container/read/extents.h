// SPDX-License-Identifier: BSD-3-Clause
// The extents that a file of version 2 states of its blocks. Internal to the container.
#pragma once

#include "container/format/block_layout.h"
#include "container/format/extent.h"
#include "container/read/column.h"
#include "container/read/connection.h"

#include <vector>

namespace container {

/// The extents of one block, by component; none where the file states none.
using BlockExtent = std::vector<ComponentExtent>;
/// Of all blocks of a column, by number; empty where no block has one.
using ColumnExtents = std::vector<BlockExtent>;

/// Reads table `extent` and checks it against its checksum. Reads no block.
///
/// \param columns  of a catalogue, by rising id
/// \return  by column; all empty in version 1
/// \errors  Error for a wrong checksum, and for rows that contradict themselves or the catalogue
std::vector<ColumnExtents> readExtents(Connection& connection, const BlockLayout& layout,
                                       const std::vector<Column>& columns);

} // namespace container
