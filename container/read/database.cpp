// SPDX-License-Identifier: BSD-3-Clause
// The public face of an open database file.
#include "container/read/database.h"

#include "container/read/metadata.h"
#include "container/read/open_file.h"

namespace container {

Database::Database(const std::string& path, unsigned int threadCount)
    : file(std::make_shared<OpenFile>(path, threadCount)) {}

const std::string& Database::path() const {
  return file->connection().path();
}

std::uint64_t Database::recordCount() const {
  return file->catalogue.layout().records;
}

std::uint64_t Database::blockRows() const {
  return file->catalogue.layout().blockRows;
}

std::size_t Database::attributeCount() const {
  return file->catalogue.columns().size();
}

const Attribute& Database::attribute(std::size_t index) const {
  return file->catalogue.columns()[index].attribute;
}

const Attribute* Database::find(const std::string& name) const {
  const Column* const column = file->catalogue.find(name);
  return column == nullptr ? nullptr : &column->attribute;
}

const Attribute& Database::require(const std::string& name) const {
  return file->requireColumn(name).attribute;
}

std::optional<std::string> Database::item(const std::string& name) const {
  return metadataItem(file->connection(), name);
}

std::vector<std::string> Database::itemNames() const {
  return metadataNames(file->connection());
}

} // namespace container
