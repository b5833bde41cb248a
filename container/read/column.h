// SPDX-License-Identifier: BSD-3-Clause
// One attribute of an open database, with the place of each of its blocks. Internal to the container.
#pragma once

#include "container/format/attribute.h"

#include <cstdint>
#include <vector>

namespace container {

/// An attribute's description, its id in the tables and the row id of each of its blocks.
struct Column {
  std::int64_t id = 0;
  Attribute attribute;
  std::vector<std::int64_t> blockRowIds; ///< by block number
};

} // namespace container
