// SPDX-License-Identifier: BSD-3-Clause
// Checks on the values of a catalogue's rows.
#include "container/read/row_checks.h"

#include <cmath>
#include <limits>

namespace container {

void wrongCatalogue(const std::string& object, const std::string& expected, const std::string& found) {
  throw Error(ErrorKind::wrongFormat, "the catalogue of the database is wrong",
              object + ": expected " + expected + ", found " + found);
}

std::string shownValue(const Statement& row, int column) {
  switch (row.type(column)) {
  case SQLITE_NULL:
    return "null";
  case SQLITE_TEXT:
    return "the text \"" + row.text(column) + "\"";
  case SQLITE_BLOB:
    return "a blob";
  default:
    return row.text(column);
  }
}

std::int64_t requireInteger(const Statement& row, int column, const std::string& object,
                            const std::string& what, std::int64_t least, std::int64_t greatest) {
  if (row.type(column) != SQLITE_INTEGER || row.integer(column) < least || row.integer(column) > greatest) {
    wrongCatalogue(object,
                   what + (greatest == std::numeric_limits<std::int64_t>::max()
                               ? " of at least " + std::to_string(least)
                               : " of " + std::to_string(least) + " to " + std::to_string(greatest)),
                   shownValue(row, column));
  }
  return row.integer(column);
}

double requireFinite(const Statement& row, int column, const std::string& object, const std::string& what) {
  const bool number = row.type(column) == SQLITE_FLOAT || row.type(column) == SQLITE_INTEGER;
  if (!number || !std::isfinite(row.real(column))) {
    wrongCatalogue(object, "a finite " + what, shownValue(row, column));
  }
  return row.real(column);
}

std::string requireText(const Statement& row, int column, const std::string& object,
                        const std::string& what) {
  if (row.type(column) != SQLITE_TEXT) {
    wrongCatalogue(object, "a text as " + what, shownValue(row, column));
  }
  return row.text(column);
}

std::string textOrNull(const Statement& row, int column, const std::string& object, const std::string& what) {
  return row.type(column) == SQLITE_NULL ? std::string() : requireText(row, column, object, what);
}

} // namespace container
