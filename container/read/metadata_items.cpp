// SPDX-License-Identifier: BSD-3-Clause
// The metadata table of an open database.
#include "container/read/database.h"

namespace riegl::rdb::embedded {
namespace {

std::string itemText(const Statement& row, const std::string& name, const std::string& path) {
  if (row.type(0) != SQLITE_TEXT) {
    throw Error(ErrorKind::damaged, "the database is damaged",
                "item \"" + name + "\" of " + path + ": expected a text, found " +
                    (row.type(0) == SQLITE_BLOB   ? "a blob"
                     : row.type(0) == SQLITE_NULL ? "null"
                                                  : "a number"));
  }
  return row.text(0);
}

} // namespace

std::optional<std::string> Database::item(const std::string& name) {
  Statement row(readers.front()->connection(), "SELECT value FROM metadata WHERE name = ?1",
                "item \"" + name + "\" of " + path());
  row.bind(1, name);
  return row.step() ? std::optional(itemText(row, name, path())) : std::nullopt;
}

std::vector<std::string> Database::itemNames() {
  const std::string object = "table \"metadata\" of " + path();
  Statement row(readers.front()->connection(),
                "SELECT name FROM metadata WHERE name IS NOT NULL ORDER BY name", object);
  std::vector<std::string> names;
  while (row.step()) {
    std::string name = itemText(row, row.text(0), path());
    if (!names.empty() && name <= names.back()) {
      throw Error(ErrorKind::damaged, "the database is damaged",
                  object + ": expected names that rise from row to row, found \"" + name + "\"");
    }
    names.push_back(std::move(name));
  }
  return names;
}

} // namespace riegl::rdb::embedded
