// SPDX-License-Identifier: BSD-3-Clause
// Names, sizes and buffer types of the stored element types, in one table.
#include "container/format/stored_type.h"

#include <array>

namespace riegl::rdb::embedded {
namespace {

using pointcloud::DataType;

struct Row {
  StoredType type;
  std::string_view name;
  std::size_t bytes;
  DataType dataType;
};

constexpr std::array<Row, 10> table{{
    {StoredType::int8, "int8", 1, DataType::INT8},
    {StoredType::uint8, "uint8", 1, DataType::UINT8},
    {StoredType::int16, "int16", 2, DataType::INT16},
    {StoredType::uint16, "uint16", 2, DataType::UINT16},
    {StoredType::int32, "int32", 4, DataType::INT32},
    {StoredType::uint32, "uint32", 4, DataType::UINT32},
    {StoredType::int64, "int64", 8, DataType::INT64},
    {StoredType::uint64, "uint64", 8, DataType::UINT64},
    {StoredType::float32, "float32", 4, DataType::FLOAT32},
    {StoredType::float64, "float64", 8, DataType::FLOAT64},
}};

const Row& rowOf(StoredType type) {
  return table[static_cast<std::size_t>(type)];
}

} // namespace

std::size_t byteSize(StoredType type) {
  return rowOf(type).bytes;
}

std::string_view name(StoredType type) {
  return rowOf(type).name;
}

std::optional<StoredType> storedTypeNamed(std::string_view name) {
  for (const Row& row : table) {
    if (row.name == name) {
      return row.type;
    }
  }
  return std::nullopt;
}

pointcloud::DataType dataTypeOf(StoredType type) {
  return rowOf(type).dataType;
}

std::optional<StoredType> storedTypeOf(pointcloud::DataType type) {
  for (const Row& row : table) {
    if (row.dataType == type) {
      return row.type;
    }
  }
  return std::nullopt;
}

} // namespace riegl::rdb::embedded
