// SPDX-License-Identifier: BSD-3-Clause
// Which row of the file holds which block of a column. Internal to the container.
#pragma once

#include "container/format/block_layout.h"
#include "container/read/column.h"
#include "container/read/connection.h"

#include <cstdint>
#include <vector>

namespace container {

/// The row ids of a column's blocks, by block number.
/// \errors Error unless there is exactly one row for each block of the layout
std::vector<std::int64_t> blockRowIds(Connection& connection, const Column& column,
                                      const BlockLayout& layout);

} // namespace container
