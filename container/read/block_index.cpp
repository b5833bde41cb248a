// SPDX-License-Identifier: BSD-3-Clause
// Finds the rows of a column's blocks.
#include "container/read/block_index.h"

#include "container/read/row_checks.h"

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

} // namespace container
