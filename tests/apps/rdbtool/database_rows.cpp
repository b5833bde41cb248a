// SPDX-License-Identifier: BSD-3-Clause
// Reads the databases that the tool has written.
#include "tests/apps/rdbtool/database_rows.h"

#include "container/format/element_traits.h"
#include "container/read/cursor.h"

#include <algorithm>

namespace support {

namespace {

using container::Attribute;
using container::Database;

template <typename T>
std::vector<T> valuesOf(const std::string& path, const std::string& name) {
  const Database database(path);
  const std::uint64_t values = database.recordCount() * database.require(name).length;
  std::vector<T> read(static_cast<std::size_t>(std::max<std::uint64_t>(values, 1)));
  container::Cursor cursor(database);
  cursor.bind(name, container::elementTypeOf<T>, read.data());
  cursor.next(database.recordCount());
  read.resize(static_cast<std::size_t>(values));
  return read;
}

} // namespace

DatabaseRows::DatabaseRows(const std::string& path) : file(path) {
  const Database database(path);
  recordCount = database.recordCount();
  for (std::size_t i = 0; i < database.attributeCount(); ++i) {
    columnNames.push_back(database.attribute(i).name);
  }
}

bool DatabaseRows::has(const std::string& name) const {
  return std::find(columnNames.begin(), columnNames.end(), name) != columnNames.end();
}

std::vector<double> DatabaseRows::column(const std::string& name) const {
  return valuesOf<double>(file, name);
}

std::vector<std::uint64_t> DatabaseRows::wholeNumbers(const std::string& name) const {
  return valuesOf<std::uint64_t>(file, name);
}

std::string DatabaseRows::typeOf(const std::string& name) const {
  const Attribute attribute = Database(file).require(name);
  return std::string(container::name(attribute.type)) + " x " + std::to_string(attribute.length);
}

std::string DatabaseRows::item(const std::string& name) const {
  return Database(file).item(name).value_or("");
}

} // namespace support
