// SPDX-License-Identifier: BSD-3-Clause
// The element types a caller's buffer may have when a column is read.
#pragma once

#include <cstdint>

namespace riegl::rdb::pointcloud {

/// Element type of a buffer given to QuerySelect::bind. The numbers are fixed: callers pass them as constants.
enum class DataType : std::uint32_t {
  NONE = 0, ///< no type; refused by bind
  UINT8 = 1,
  INT8 = 2,
  UINT16 = 3,
  INT16 = 4,
  UINT32 = 5,
  INT32 = 6,
  UINT64 = 7,
  INT64 = 8,
  FLOAT32 = 9,
  FLOAT64 = 10
};

} // namespace riegl::rdb::pointcloud
