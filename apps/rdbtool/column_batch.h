// SPDX-License-Identifier: BSD-3-Clause
// Buffers for the columns of a database that is being written, a bounded number of rows at a time.
#pragma once

#include "container/format/attribute.h"
#include "container/write/writer.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace rdbtool {

using container::Attribute;
using container::byteSize;
using container::ElementType;
using container::SourceScaling;
using container::Writer;
using container::WriterSettings;

/// Rows per batch; this bounds the memory of every import and synthesis.
constexpr std::size_t batchRows = 65536;

/// The description of an attribute without scale and offset.
Attribute attribute(const std::string& name, ElementType type, const std::string& unit = {},
                    unsigned length = 1);

/// One buffer per attribute, and the writer that receives their rows.
///
/// \threads one thread per object
class ColumnBatch {
 public:
  /// \param target       must outlive the batch
  /// \param mostRows     rows that each buffer holds
  explicit ColumnBatch(Writer& target, std::size_t mostRows = batchRows)
      : writer(target), rowCapacity(mostRows) {}

  /// Adds an attribute to the database and a column to the batch; returns the number of the column.
  /// \param source  the integers that the values of each component are made from, or none; see Writer::addAttribute
  std::size_t add(const Attribute& spec, const std::vector<SourceScaling>& source = {});

  /// The address of one row of one column: `length` values of the stored type.
  std::byte* place(std::size_t column, std::size_t row) {
    return columns[column].bytes.data() + row * columns[column].rowBytes;
  }
  /// Stores one value of the column's own type.
  template <typename T>
  void put(std::size_t column, std::size_t row, const T& value) {
    std::memcpy(place(column, row), &value, sizeof value);
  }
  /// The number of columns added so far.
  std::size_t columnCount() const noexcept { return columns.size(); }

  /// Appends the first `rows` rows to the database.
  ///
  /// \errors  ToolError after an interruption; container::Error from the writer
  void write(std::size_t rows);

 private:
  struct Column {
    std::size_t rowBytes;
    std::vector<std::byte> bytes;
  };
  Writer& writer;
  std::size_t rowCapacity;
  std::vector<Column> columns;
};

} // namespace rdbtool
