// SPDX-License-Identifier: BSD-3-Clause
// Everything that a copy of a database has to keep.
#include "tests/apps/rdbtool/stored_content.h"

#include "container/read/cursor.h"
#include "container/write/writer.h"

#include <algorithm>
#include <sstream>

namespace support {

namespace {

using container::Attribute;

std::string described(const Attribute& attribute) {
  std::ostringstream text;
  text << std::hexfloat << attribute.name << "|" << container::name(attribute.type) << "|" << attribute.length
       << "|" << attribute.scale << "|" << attribute.offset << "|" << attribute.unit << "|" << attribute.title
       << "|" << attribute.description;
  return text.str();
}

std::vector<unsigned char> storedValues(const container::Database& database, const Attribute& attribute) {
  const std::uint64_t bytes = database.recordCount() * attribute.recordBytes();
  std::vector<unsigned char> values(static_cast<std::size_t>(std::max<std::uint64_t>(bytes, 1)));
  container::Cursor cursor(database);
  cursor.bindStored(attribute.name, values.data());
  cursor.next(database.recordCount());
  values.resize(static_cast<std::size_t>(bytes));
  return values;
}

} // namespace

StoredContent storedContent(const std::string& path) {
  const container::Database database(path);
  StoredContent content{database.recordCount(), database.blockRows(), {}, {}, {}};
  for (std::size_t i = 0; i < database.attributeCount(); ++i) {
    const Attribute& attribute = database.attribute(i);
    content.attributes.push_back(described(attribute));
    content.values[attribute.name] = storedValues(database, attribute);
  }
  for (const std::string& name : database.itemNames()) {
    content.items[name] = database.item(name).value_or("");
  }
  return content;
}

void makeVersion1(const std::string& path) {
  const StoredContent content = storedContent(path);
  const container::Database database(path);
  container::WriterSettings settings;
  settings.version = 1;
  settings.blockRows = static_cast<std::uint32_t>(content.blockRows);
  container::Writer writer(path, settings);
  std::vector<const void*> columns;
  for (std::size_t i = 0; i < database.attributeCount(); ++i) {
    writer.addAttribute(database.attribute(i));
    columns.push_back(content.values.at(database.attribute(i).name).data());
  }
  for (const auto& [name, value] : content.items) {
    writer.setMetadata(name, value);
  }
  writer.write(content.records, columns);
  writer.finish();
}

} // namespace support
