// SPDX-License-Identifier: BSD-3-Clause
// The element types of the values in a database file and in the buffers that receive them.
#pragma once

#include "container/format/api.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace container {

/// Type of a single value; little-endian in the file, in the machine's byte order in a buffer.
enum class ElementType { int8, uint8, int16, uint16, int32, uint32, int64, uint64, float32, float64 };

/// How many element types there are; their numbers run from 0.
inline constexpr std::size_t elementTypeCount = 10;

/// Bytes of one value, 1 to 8.
CONTAINER_API std::size_t byteSize(ElementType type);

/// The name of the type in the file, such as "uint16".
CONTAINER_API std::string_view name(ElementType type);

/// The type of that name, or nothing if there is none.
CONTAINER_API std::optional<ElementType> elementTypeNamed(std::string_view name);

} // namespace container
