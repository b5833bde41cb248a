// SPDX-License-Identifier: BSD-3-Clause
// Reads the databases that the tool has written.
#include "tests/apps/rdbtool/database_rows.h"

#include "container/format/stored_type.h"
#include "platform/client/rdb.h"

#include <algorithm>

namespace support {

namespace {

using riegl::rdb::pointcloud::DataType;

void open(riegl::rdb::Pointcloud& database, const std::string& path) {
  database.open(path, {});
}

template <typename T>
std::vector<T> valuesOf(const std::string& path, const std::string& name, DataType type) {
  riegl::rdb::Pointcloud database{riegl::rdb::Context("", "")};
  open(database, path);
  const std::uint64_t values = database.recordCount() * database.pointAttribute().get(name).length;
  std::vector<T> read(static_cast<std::size_t>(std::max<std::uint64_t>(values, 1)));
  auto query = database.select("");
  query.bind(name, type, read.data(), 0);
  query.next(static_cast<unsigned>(database.recordCount()));
  read.resize(static_cast<std::size_t>(values));
  return read;
}

} // namespace

DatabaseRows::DatabaseRows(const std::string& path) : file(path) {
  riegl::rdb::Pointcloud database{riegl::rdb::Context("", "")};
  open(database, path);
  recordCount = database.recordCount();
  columnNames = database.pointAttribute().list();
}

bool DatabaseRows::has(const std::string& name) const {
  return std::find(columnNames.begin(), columnNames.end(), name) != columnNames.end();
}

std::vector<double> DatabaseRows::column(const std::string& name) const {
  return valuesOf<double>(file, name, DataType::FLOAT64);
}

std::vector<std::uint64_t> DatabaseRows::wholeNumbers(const std::string& name) const {
  return valuesOf<std::uint64_t>(file, name, DataType::UINT64);
}

std::string DatabaseRows::typeOf(const std::string& name) const {
  riegl::rdb::Pointcloud database{riegl::rdb::Context("", "")};
  open(database, file);
  const auto attribute = database.pointAttribute().get(name);
  const auto type = riegl::rdb::embedded::storedTypeOf(attribute.storedType);
  return std::string(riegl::rdb::embedded::name(type.value())) + " x " + std::to_string(attribute.length);
}

std::string DatabaseRows::item(const std::string& name) const {
  riegl::rdb::Pointcloud database{riegl::rdb::Context("", "")};
  open(database, file);
  return database.metaData().get(name, "");
}

} // namespace support
