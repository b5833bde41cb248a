// SPDX-License-Identifier: BSD-3-Clause
// Finds the rows of a column's blocks.
#include "container/read/block_index.h"

#include "container/codec/compression.h"
#include "container/read/row_checks.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace container {

std::vector<std::int64_t> blockRowIds(Connection& connection, const Column& column,
                                      const BlockLayout& layout) {
  const std::string object = "column \"" + column.attribute.name + "\" of " + connection.path();
  const std::uint64_t expected = layout.blockCount();
  std::vector<std::int64_t> rowIds;
  Statement row(
      connection,
      "SELECT number, rowid FROM block WHERE attribute = ?1 AND typeof(number) = 'integer' ORDER BY number",
      object);
  row.bind(1, column.id);
  while (row.step()) {
    const std::uint64_t number = rowIds.size();
    if (number == expected) {
      wrongCatalogue(object, std::to_string(expected) + " blocks", "block " + row.text(0) + " besides");
    }
    if (row.type(0) != SQLITE_INTEGER || row.integer(0) != static_cast<std::int64_t>(number)) {
      wrongCatalogue(object, "block " + std::to_string(number) + " of " + std::to_string(expected),
                     "block " + row.text(0));
    }
    rowIds.push_back(row.integer(1));
  }
  if (rowIds.size() < expected) {
    wrongCatalogue(object, std::to_string(expected) + " blocks", std::to_string(rowIds.size()));
  }
  return rowIds;
}

namespace {

constexpr std::int64_t anyInteger = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t greatestInteger = std::numeric_limits<std::int64_t>::max();

/// The rows of the two tables side by side. Neither is sorted: the rows have to come in order, so that no damaged or
/// hostile table is held in memory.
class IndexRows {
 public:
  IndexRows(Connection& connection, const BlockLayout& division, std::vector<Column>& all)
      : layout(division), columns(all), fileBytes(connection.identity().bytes), path(connection.path()),
        row(connection,
            "SELECT attribute, number, encoding, checksum, bytes FROM block_index "
            "INDEXED BY sqlite_autoindex_block_index_1",
            "table \"block_index\" of " + connection.path()),
        key(connection, "SELECT attribute, number, rowid FROM block INDEXED BY sqlite_autoindex_block_1",
            "table \"block\" of " + connection.path()) {}

  void readAll(TextChecksum& text) {
    while (row.step()) {
      readRow(text);
    }
    if (key.step()) {
      wrongCatalogue(key.object(), "the blocks of table \"block_index\"",
                     "block " + key.text(1) + " of attribute " + key.text(0) + " besides");
    }
    for (const Column& column : columns) {
      if (column.index.size() != layout.blockCount()) {
        wrongCatalogue("column \"" + column.attribute.name + "\" of " + path,
                       std::to_string(layout.blockCount()) + " blocks", std::to_string(column.index.size()));
      }
    }
  }

 private:
  void readRow(TextChecksum& text) {
    BlockRow read;
    read.attribute = requireInteger(row, 0, row.object(), "an attribute", anyInteger, greatestInteger);
    read.number = requireInteger(row, 1, row.object(), "a number", 0, greatestInteger);
    const std::string encoding = textOrNull(row, 2, row.object(), "encoding");
    if (row.type(2) != SQLITE_NULL) {
      read.encoding = encoding;
    }
    read.checksum =
        requireInteger(row, 3, row.object(), "a checksum", 0, std::numeric_limits<std::uint32_t>::max());
    read.bytes = requireInteger(row, 4, row.object(), "a count of bytes", 0, greatestInteger);
    text.add(read);
    Column& column = columnOf(read);
    column.index.push_back({static_cast<std::uint64_t>(read.bytes), static_cast<std::uint32_t>(read.checksum),
                            read.encoding.has_value()});
    requireEncoding(column, read);
    requireSize(column, read);
    column.blockRowIds.push_back(rowIdOf(column, read));
  }

  // Rows come by rising attribute and number.
  Column& columnOf(const BlockRow& read) {
    while (current < columns.size() && columns[current].id < read.attribute) {
      ++current;
    }
    if (current == columns.size() || columns[current].id != read.attribute) {
      wrongCatalogue(row.object(), "blocks of the attributes in rising order",
                     "one of attribute " + std::to_string(read.attribute));
    }
    Column& column = columns[current];
    const std::uint64_t expected = column.index.size();
    if (static_cast<std::uint64_t>(read.number) != expected || expected >= layout.blockCount()) {
      wrongCatalogue("column \"" + column.attribute.name + "\" of " + path,
                     "block " + std::to_string(expected) + " of " + std::to_string(layout.blockCount()),
                     "block " + std::to_string(read.number));
    }
    return column;
  }

  std::string nameOf(const Column& column, const BlockRow& read) const {
    return "column \"" + column.attribute.name + "\" of " + path + ", block " + std::to_string(read.number);
  }

  void requireEncoding(const Column& column, const BlockRow& read) const {
    if (read.encoding && *read.encoding != piecesEncoding) {
      wrongCatalogue(nameOf(column, read), "no encoding or \"pieces\"",
                     "the encoding \"" + std::string(*read.encoding) + "\"");
    }
  }

  // What a block claims to hold is bounded by its bytes, and they by the file.
  void requireSize(const Column& column, const BlockRow& read) {
    const auto bytes = static_cast<std::uint64_t>(read.bytes);
    const std::uint64_t decoded =
        layout.rows(static_cast<std::uint64_t>(read.number)) * column.attribute.recordBytes();
    if (!read.encoding && bytes != decoded) {
      wrongCatalogue(nameOf(column, read), std::to_string(decoded) + " bytes", std::to_string(bytes));
    }
    constexpr std::uint64_t mostByScaling = 2; // float64 as int32
    const std::uint64_t most = codec::mostDecodedBytes(codec::Codec::zlib, bytes);
    if (decoded / mostByScaling > most) {
      wrongCatalogue(nameOf(column, read),
                     "bytes that can hold " + std::to_string(decoded) + " bytes of records",
                     std::to_string(bytes));
    }
    if (bytes > fileBytes - sumOfBytes) {
      wrongCatalogue(row.object(), "blocks that fit into " + std::to_string(fileBytes) + " bytes",
                     "larger ones");
    }
    sumOfBytes += bytes;
  }

  std::int64_t rowIdOf(const Column& column, const BlockRow& read) {
    const std::string expected =
        "block " + std::to_string(read.number) + " of column \"" + column.attribute.name + "\"";
    if (!key.step()) {
      wrongCatalogue(key.object(), expected, "none");
    }
    if (key.type(0) != SQLITE_INTEGER || key.type(1) != SQLITE_INTEGER || key.integer(0) != read.attribute ||
        key.integer(1) != read.number) {
      wrongCatalogue(key.object(), expected,
                     "block " + shownValue(key, 1) + " of attribute " + shownValue(key, 0));
    }
    return key.integer(2);
  }

  const BlockLayout& layout;
  std::vector<Column>& columns;
  std::uint64_t fileBytes;
  std::string path;
  Statement row, key;
  std::size_t current = 0;
  std::uint64_t sumOfBytes = 0;
};

} // namespace

void readBlockIndex(Connection& connection, const BlockLayout& layout, std::vector<Column>& columns,
                    TextChecksum& text) {
  IndexRows(connection, layout, columns).readAll(text);
}

} // namespace container
