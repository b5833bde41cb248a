// SPDX-License-Identifier: BSD-3-Clause
// Reads the extents of blocks and checks them.
#include "container/read/extents.h"

#include "container/format/catalogue_text.h"
#include "container/read/row_checks.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>
#include <utility>

namespace container {
namespace {

constexpr std::int64_t greatestInteger = std::numeric_limits<std::int64_t>::max();

/// Reads the rows in the order of the table, which has to be that of its key.
class ExtentRows {
 public:
  ExtentRows(Connection& connection, const BlockLayout& division, const std::vector<Column>& all)
      : layout(division), columns(all), extents(all.size()),
        row(connection,
            "SELECT attribute, number, component, minimum, maximum, missing FROM extent "
            "INDEXED BY sqlite_autoindex_extent_1",
            "table \"extent\" of " + connection.path()) {}

  std::vector<ColumnExtents> readAll(TextChecksum& text) {
    while (row.step()) {
      const ExtentRow read = current();
      text.add(read);
      ComponentExtent& extent = placeOf(read);
      extent = {read.minimum, read.maximum, static_cast<std::uint64_t>(read.missing)};
      requireSense(read);
    }
    requireWhole();
    return std::move(extents);
  }

 private:
  ExtentRow current() {
    const std::string& object = row.object();
    ExtentRow read;
    read.attribute = requireInteger(row, 0, object, "an attribute", std::numeric_limits<std::int64_t>::min(),
                                    greatestInteger);
    read.number = requireInteger(row, 1, object, "a number", 0, greatestInteger);
    read.component = requireInteger(row, 2, object, "a component", 0, mostExtentComponents - 1);
    read.minimum = realOrNull(3);
    read.maximum = realOrNull(4);
    read.missing = requireInteger(row, 5, object, "a count of missing values", 0, greatestInteger);
    return read;
  }

  std::optional<double> realOrNull(int field) {
    if (row.type(field) == SQLITE_NULL) {
      return std::nullopt;
    }
    if (row.type(field) != SQLITE_FLOAT && row.type(field) != SQLITE_INTEGER) {
      wrongCatalogue(row.object(), "a number or null", shownValue(row, field));
    }
    return row.real(field);
  }

  // The components of a block stand one after the other, the blocks of a column too.
  ComponentExtent& placeOf(const ExtentRow& read) {
    while (column < columns.size() && columns[column].id < read.attribute) {
      requireWhole();
      last = nullptr;
      ++column;
    }
    const auto number = static_cast<std::uint64_t>(read.number);
    const bool isKnown =
        column < columns.size() && columns[column].id == read.attribute && number < layout.blockCount();
    const unsigned int length = isKnown ? columns[column].attribute.length : 0;
    if (!isKnown || length > mostExtentComponents) {
      refuseRow("blocks of the attributes in rising order", read);
    }
    ColumnExtents& all = extents[column];
    if (all.empty()) {
      all.resize(static_cast<std::size_t>(layout.blockCount()));
      last = nullptr;
    }
    BlockExtent& block = all[static_cast<std::size_t>(number)];
    if (last != &block) {
      requireWhole();
      if (last != nullptr && &block < last) {
        refuseRow("blocks in rising order", read);
      }
      last = &block;
    }
    if (static_cast<std::uint64_t>(read.component) != block.size() || block.size() >= length) {
      refuseRow("component " + std::to_string(block.size()) + " of " + std::to_string(length), read);
    }
    return block.emplace_back();
  }

  [[noreturn]] void refuseRow(const std::string& expected, const ExtentRow& read) {
    wrongCatalogue(row.object(), expected,
                   "component " + std::to_string(read.component) + " of block " +
                       std::to_string(read.number) + " of attribute " + std::to_string(read.attribute));
  }

  // A block has the extents of all its components or none.
  void requireWhole() const {
    if (last != nullptr && last->size() != columns[column].attribute.length) {
      wrongCatalogue(row.object(),
                     "extents of " + std::to_string(columns[column].attribute.length) + " components",
                     std::to_string(last->size()));
    }
  }

  void requireSense(const ExtentRow& read) {
    const auto rows = static_cast<std::int64_t>(layout.rows(static_cast<std::uint64_t>(read.number)));
    const bool isEmpty = read.missing == rows;
    const bool hasBoth = read.minimum.has_value() && read.maximum.has_value();
    const bool hasNone = !read.minimum && !read.maximum;
    if (read.missing > rows || (isEmpty ? !hasNone : !hasBoth) ||
        (hasBoth && !(*read.minimum <= *read.maximum))) {
      refuseRow("a range that fits the values that are missing", read);
    }
  }

  const BlockLayout& layout;
  const std::vector<Column>& columns;
  std::vector<ColumnExtents> extents;
  Statement row;
  std::size_t column = 0;
  const BlockExtent* last = nullptr; ///< of the block read last, in the current column
};

} // namespace

std::vector<ColumnExtents> readExtents(Connection& connection, const BlockLayout& layout,
                                       const std::vector<Column>& columns) {
  if (connection.version() == firstVersion) {
    return std::vector<ColumnExtents>(columns.size());
  }
  const ValueLimit limit(connection, mostMetadataBytes);
  TextChecksum text;
  std::vector<ColumnExtents> extents = ExtentRows(connection, layout, columns).readAll(text);
  Statement row(connection, "SELECT extent_checksum FROM database",
                "table \"database\" of " + connection.path());
  row.step();
  const bool hasExtents = std::any_of(extents.begin(), extents.end(),
                                      [](const ColumnExtents& column) { return !column.empty(); });
  if (row.type(0) == SQLITE_NULL && !hasExtents) {
    return extents;
  }
  const std::int64_t expected = requireInteger(row, 0, row.object(), "a checksum of the extents", 0,
                                               std::numeric_limits<std::uint32_t>::max());
  if (const std::uint32_t found = text.value(); found != expected) {
    throw Error(ErrorKind::damaged, "the database is damaged",
                "extents of " + connection.path() + ": expected checksum " + std::to_string(expected) +
                    ", found " + std::to_string(found));
  }
  return extents;
}

} // namespace container
