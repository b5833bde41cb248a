// SPDX-License-Identifier: BSD-3-Clause
// The element types a column may have inside a database file.
#pragma once

#include "platform/client/api.h"
#include "platform/client/data_type.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace riegl::rdb::embedded {

/// Stored element type; little-endian in the file.
enum class StoredType { int8, uint8, int16, uint16, int32, uint32, int64, uint64, float32, float64 };

/// Bytes of one value, 1 to 8.
RDB_API std::size_t byteSize(StoredType type);

/// The name that the file carries, such as "uint16".
RDB_API std::string_view name(StoredType type);

/// The type of that name, or nothing if there is none.
RDB_API std::optional<StoredType> storedTypeNamed(std::string_view name);

/// The buffer type of the same representation.
RDB_API pointcloud::DataType dataTypeOf(StoredType type);

/// The stored type of the same representation, or nothing for a value that names no buffer type.
RDB_API std::optional<StoredType> storedTypeOf(pointcloud::DataType type);

} // namespace riegl::rdb::embedded
