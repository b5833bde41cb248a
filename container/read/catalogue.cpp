// SPDX-License-Identifier: BSD-3-Clause
// Reads the catalogue, and checks it against itself and the file before anything is allocated for it.
#include "container/read/catalogue.h"

#include "container/read/block_index.h"
#include "container/read/metadata.h"
#include "container/read/row_checks.h"

#include <limits>
#include <optional>
#include <string_view>
#include <utility>

namespace container {
namespace {

std::string tableOf(const Connection& connection, const char* table) {
  return std::string("table \"") + table + "\" of " + connection.path();
}

// Damaged rows may share the pages that hold a text, so that all together claim more than the file has.
std::uint64_t textBytesOf(const Attribute& attribute) {
  return attribute.name.size() + attribute.unit.size() + attribute.title.size() +
         attribute.description.size();
}

Attribute attributeFrom(const Statement& row, const std::string& path) {
  Attribute attribute;
  attribute.name = requireText(row, 1, "attribute " + std::to_string(row.integer(0)) + " of " + path, "name");
  const std::string object = "column \"" + attribute.name + "\" of " + path;
  const std::string typeName = requireText(row, 2, object, "type");
  const auto type = elementTypeNamed(typeName);
  if (!type) {
    wrongCatalogue(object, "a type of int8 to uint64, float32 or float64", "\"" + typeName + "\"");
  }
  attribute.type = *type;
  attribute.length = static_cast<unsigned int>(requireInteger(row, 3, object, "a length", 1, maximumLength));
  attribute.scale = requireFinite(row, 4, object, "scale");
  if (attribute.scale == 0) {
    wrongCatalogue(object, "a scale other than 0", "0");
  }
  attribute.offset = requireFinite(row, 5, object, "offset");
  attribute.unit = textOrNull(row, 6, object, "unit");
  attribute.title = textOrNull(row, 7, object, "title");
  attribute.description = textOrNull(row, 8, object, "description");
  return attribute;
}

// The texts belong to the column; NULL and no text differ in the catalogue's text.
AttributeRow rowOf(const Column& column, const Statement& row) {
  const Attribute& attribute = column.attribute;
  const auto unlessNull = [&](int field, const std::string& text) {
    return row.type(field) == SQLITE_NULL ? std::nullopt : std::optional<std::string_view>(text);
  };
  return {column.id,
          attribute.name,
          name(attribute.type),
          attribute.length,
          attribute.scale,
          attribute.offset,
          unlessNull(6, attribute.unit),
          unlessNull(7, attribute.title),
          unlessNull(8, attribute.description)};
}

} // namespace

Catalogue::Catalogue(Connection& connection) {
  const bool isProtected = connection.version() != firstVersion;
  const ValueLimit limit(connection,
                         isProtected ? mostMetadataBytes : std::numeric_limits<std::uint64_t>::max());
  readLayout(connection);
  readAttributes(connection);
  if (all.empty() && division.records != 0) {
    wrongCatalogue(tableOf(connection, "database"), "no records without attributes",
                   std::to_string(division.records) + " records");
  }
  if (isProtected) {
    readProtectedTables(connection);
    return;
  }
  checkSize(connection);
  for (Column& column : all) {
    column.blockRowIds = blockRowIds(connection, column, division);
  }
}

// The rest of the catalogue's text, and its checksum.
void Catalogue::readProtectedTables(Connection& connection) {
  addMetadata(connection, text);
  readBlockIndex(connection, division, all, text);
  const std::string object = tableOf(connection, "database");
  Statement row(connection, "SELECT catalogue_checksum FROM database", object);
  constexpr auto greatest = std::numeric_limits<std::uint32_t>::max();
  row.step();
  const std::int64_t expected = requireInteger(row, 0, object, "a checksum of the catalogue", 0, greatest);
  if (const std::uint32_t found = text.value(); found != expected) {
    throw Error(ErrorKind::damaged, "the database is damaged",
                "catalogue of " + connection.path() + ": expected checksum " + std::to_string(expected) +
                    ", found " + std::to_string(found));
  }
}

void Catalogue::readLayout(Connection& connection) {
  const std::string object = tableOf(connection, "database");
  Statement row(connection, "SELECT records, block_rows FROM database LIMIT 2", object);
  if (!row.step()) {
    wrongCatalogue(object, "one row", "none");
  }
  constexpr auto greatest = std::numeric_limits<std::int64_t>::max();
  const auto records = requireInteger(row, 0, object, "a count of records", 0, greatest);
  const auto blockRows =
      requireInteger(row, 1, object, "records per block", 1, std::numeric_limits<std::uint32_t>::max());
  division = {static_cast<std::uint64_t>(records), static_cast<std::uint64_t>(blockRows)};
  text.add(DatabaseRow{records, blockRows});
  if (row.step()) {
    wrongCatalogue(object, "one row", "more");
  }
}

void Catalogue::readAttributes(Connection& connection) {
  const std::string object = tableOf(connection, "attribute");
  Statement row(connection,
                "SELECT id, name, type, length, scale, \"offset\", unit, title, description FROM attribute "
                "NOT INDEXED", // in the order of the table: sorting would hold every text in memory
                object);
  const std::uint64_t fileBytes = connection.identity().bytes;
  const bool isBoundByFile = connection.version() == firstVersion || fileBytes < mostMetadataBytes;
  const std::uint64_t mostTextBytes = isBoundByFile ? fileBytes : mostMetadataBytes;
  std::uint64_t textBytes = 0;
  while (row.step()) {
    if (row.type(0) != SQLITE_INTEGER || (!all.empty() && row.integer(0) <= all.back().id)) {
      wrongCatalogue(object, "ids that rise from row to row", shownValue(row, 0));
    }
    Column column{row.integer(0), attributeFrom(row, connection.path()), {}, {}};
    text.add(rowOf(column, row));
    if (textBytes += textBytesOf(column.attribute); textBytes > mostTextBytes) {
      const std::string most = std::to_string(mostTextBytes);
      wrongCatalogue(object,
                     isBoundByFile ? "at most as much text as the file has bytes, " + most
                                   : "at most " + most + " bytes of text",
                     "more");
    }
    if (!indexByName.emplace(column.attribute.name, all.size()).second) {
      wrongCatalogue(object, "every name once", "\"" + column.attribute.name + "\" twice");
    }
    all.push_back(std::move(column));
  }
}

void Catalogue::checkSize(const Connection& connection) const {
  const std::string object = tableOf(connection, "database");
  const std::uint64_t fileBytes = connection.identity().bytes;
  std::uint64_t recordBytes = 0;
  for (const Column& column : all) {
    recordBytes += column.attribute.recordBytes();
  }
  if (recordBytes != 0 && division.records > fileBytes / recordBytes) {
    wrongCatalogue(object,
                   "at most " + std::to_string(fileBytes / recordBytes) + " records of " +
                       std::to_string(recordBytes) + " bytes in a file of " + std::to_string(fileBytes) +
                       " bytes",
                   std::to_string(division.records) + " records");
  }
}

const Column* Catalogue::find(const std::string& name) const {
  const auto found = indexByName.find(name);
  return found == indexByName.end() ? nullptr : &all[found->second];
}

} // namespace container
