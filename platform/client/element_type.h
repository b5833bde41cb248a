// SPDX-License-Identifier: BSD-3-Clause
// The client's data types and the container's element types, one for one. Internal to the client.
#pragma once

#include "container/format/element_type.h"
#include "platform/client/data_type.h"

#include <array>
#include <cstddef>
#include <optional>

namespace riegl::rdb::embedded {

/// The data types in the order of container::ElementType.
inline constexpr std::array<pointcloud::DataType, container::elementTypeCount> dataTypes{
    pointcloud::DataType::INT8,   pointcloud::DataType::UINT8,  pointcloud::DataType::INT16,
    pointcloud::DataType::UINT16, pointcloud::DataType::INT32,  pointcloud::DataType::UINT32,
    pointcloud::DataType::INT64,  pointcloud::DataType::UINT64, pointcloud::DataType::FLOAT32,
    pointcloud::DataType::FLOAT64};

constexpr pointcloud::DataType dataTypeOf(container::ElementType type) {
  return dataTypes[static_cast<std::size_t>(type)];
}

/// The element type, or nothing for a number that names no data type.
constexpr std::optional<container::ElementType> elementTypeOf(pointcloud::DataType type) {
  for (std::size_t i = 0; i < dataTypes.size(); ++i) {
    if (dataTypes[i] == type) {
      return static_cast<container::ElementType>(i);
    }
  }
  return std::nullopt;
}

} // namespace riegl::rdb::embedded
