// SPDX-License-Identifier: BSD-3-Clause
// The metadata table of an open database.
#include "container/read/metadata.h"

#include "container/read/row_checks.h"

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

void addMetadata(Connection& connection, TextChecksum& text) {
  // Names come from the index and values by name, as they do in later reads: a damaged index shows here. Sorting would
  // hold all names in memory.
  Statement row(connection, "SELECT name FROM metadata INDEXED BY sqlite_autoindex_metadata_1",
                "table \"metadata\" of " + connection.path());
  std::uint64_t bytes = 0;
  std::optional<std::string> last;
  while (row.step()) {
    std::string name = requireText(row, 0, row.object(), "name");
    if (last && name <= *last) {
      damaged(row.object(), "names that rise from row to row", "\"" + name + "\"");
    }
    const std::string value = metadataItem(connection, name).value_or("");
    bytes += name.size() + value.size();
    if (bytes > mostMetadataBytes) {
      wrongCatalogue(row.object(),
                     "at most " + std::to_string(mostMetadataBytes) + " bytes of names and values", "more");
    }
    text.add(MetadataRow{name, value});
    last = std::move(name);
  }
}

} // namespace container
