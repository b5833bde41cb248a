// SPDX-License-Identifier: BSD-3-Clause
// The element types that columns have on the grid, and what a database client has to know of each.
#pragma once

namespace Riegl {

/// Element type of a column. `point`, `vector` and `rgba` consist of several components, all others of one.
enum class ElementType { float64, float32, int16, uint16, int32, uint32, uint64, uint8, point, vector, rgba };

/// Components per element.
constexpr unsigned componentsOf(ElementType type) {
  switch (type) {
  case ElementType::point:
  case ElementType::vector:
    return 3;
  case ElementType::rgba:
    return 4;
  case ElementType::float64:
  case ElementType::float32:
  case ElementType::int16:
  case ElementType::uint16:
  case ElementType::int32:
  case ElementType::uint32:
  case ElementType::uint64:
  case ElementType::uint8:
    return 1;
  }
  return 0; // no element type
}

/// Number of the client's data type (`riegl::rdb::pointcloud::DataType`) for the components of an element.
constexpr unsigned dataTypeOf(ElementType type) {
  switch (type) {
  case ElementType::uint8:
  case ElementType::rgba:
    return 1;
  case ElementType::uint16:
    return 3;
  case ElementType::int16:
    return 4;
  case ElementType::uint32:
    return 5;
  case ElementType::int32:
    return 6;
  case ElementType::uint64:
    return 7;
  case ElementType::float32:
    return 9;
  case ElementType::float64:
  case ElementType::point:
  case ElementType::vector:
    return 10;
  }
  return 0; // no element type
}

} // namespace Riegl
