// SPDX-License-Identifier: BSD-3-Clause
// Which row of the file holds which block of a column. Internal to the container.
#pragma once

#include "container/format/block_layout.h"
#include "container/format/catalogue_text.h"
#include "container/read/column.h"
#include "container/read/connection.h"

#include <cstdint>
#include <vector>

namespace container {

/// The row ids of a column's blocks, by block number.
/// \errors Error unless there is exactly one row for each block of the layout
std::vector<std::int64_t> blockRowIds(Connection& connection, const Column& column,
                                      const BlockLayout& layout);

/// Reads table `block_index` of a file of version 2 into `columns`, beside the keys of table `block`. Reads no row of
/// `block` itself: its keys are in the index of its primary key.
///
/// \param columns  by rising id; each receives the rows of its blocks
/// \param text     receives the line of each row
/// \errors Error unless both tables have exactly one row for each block of the layout, of a size that can hold its
///         records and that the file can hold
void readBlockIndex(Connection& connection, const BlockLayout& layout, std::vector<Column>& columns,
                    TextChecksum& text);

} // namespace container
