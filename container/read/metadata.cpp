// SPDX-License-Identifier: BSD-3-Clause
// The metadata table of an open database.
#include "container/read/metadata.h"

#include <utility>

namespace container {
namespace {

[[noreturn]] void damaged(const std::string& object, const std::string& expected, const std::string& found) {
  throw Error(ErrorKind::damaged, "the database is damaged",
              object + ": expected " + expected + ", found " + found);
}

// Asks for the type before the text: SQLite converts the value when its text is read.
std::string textOf(const Statement& row, const std::string& expected) {
  if (row.type(0) != SQLITE_TEXT) {
    damaged(row.object(), expected,
            row.type(0) == SQLITE_BLOB   ? "a blob"
            : row.type(0) == SQLITE_NULL ? "null"
                                         : "a number");
  }
  return row.text(0);
}

} // namespace

std::optional<std::string> metadataItem(Connection& connection, const std::string& name) {
  Statement row(connection, "SELECT value FROM metadata WHERE name = ?1",
                "item \"" + name + "\" of " + connection.path());
  row.bind(1, name);
  return row.step() ? std::optional(textOf(row, "a text")) : std::nullopt;
}

std::vector<std::string> metadataNames(Connection& connection) {
  Statement row(connection, "SELECT name FROM metadata WHERE name IS NOT NULL ORDER BY name",
                "table \"metadata\" of " + connection.path());
  std::vector<std::string> names;
  while (row.step()) {
    std::string name = textOf(row, "a text as name");
    if (!names.empty() && name <= names.back()) {
      damaged(row.object(), "names that rise from row to row", "\"" + name + "\"");
    }
    names.push_back(std::move(name));
  }
  return names;
}

} // namespace container
