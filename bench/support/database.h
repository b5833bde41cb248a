// SPDX-License-Identifier: BSD-3-Clause
// Databases made from a seed, and what the grid holds of them.
#pragma once

#include "container/format/element_type.h"
#include "container/write/writer.h"
#include "model/nimbra/grid.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace bench {

using ElementType = container::ElementType;

/// A column of a database that is stored as a load asks for it, and the field that it becomes.
struct Column {
  std::string attribute;
  std::string field;
  ElementType type = ElementType::float64;
  unsigned int length = 1;
  bool inChart = true;

  std::size_t recordBytes() const { return length * container::byteSize(type); }
};

/// The six columns of a typical scan, 66 bytes per record: both positions, time stamp, amplitude, reflectance and
/// deviation.
std::vector<Column> scanColumns();

/// The first `count` columns that a load knows, in its order; at most 58, since the two time columns exclude each other.
/// Only a load with all attributes brings them all.
std::vector<Column> vocabularyColumns(std::size_t count);

std::size_t recordBytes(const std::vector<Column>& columns);

/// `rows` records of a column from the seed that is the column's index, beginning with record `first`.
std::vector<unsigned char> columnBytes(const Column& column, std::size_t index, std::uint64_t first,
                                       std::uint64_t rows);

/// Writes `rows` records; a second file, where a path is given, takes the same bytes bare: column after column.
void writeDatabase(const std::string& path, std::uint64_t rows, const std::vector<Column>& columns,
                   const std::string& barePath = {});

/// Loads a point cloud with all attributes; raises what the load returns.
void load(const std::string& path, Nimbra::Grid& grid);

/// The bytes of one fragment of a column, and how many there are.
struct Bytes {
  const unsigned char* first = nullptr;
  std::size_t count = 0;
};

/// The fragments of a field; raises where it is missing.
std::vector<Bytes> fragmentsOf(const Nimbra::Grid& grid, const std::string& field, bool inChart = true);

/// Whether a field is `rows` records of `expected`.
bool holds(const Nimbra::Grid& grid, const Column& column, const unsigned char* expected, std::uint64_t rows);

/// Raises where the grid does not hold what writeDatabase has written.
void requireLoaded(const Nimbra::Grid& grid, const std::vector<Column>& columns, std::uint64_t rows);

} // namespace bench
