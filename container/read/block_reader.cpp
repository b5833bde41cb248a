// SPDX-License-Identifier: BSD-3-Clause
// Reads blocks of one file through one connection.
#include "container/read/block_reader.h"

#include <limits>

namespace container {
namespace {

const char* typeText(int type) {
  switch (type) {
  case SQLITE_INTEGER:
    return "an integer";
  case SQLITE_FLOAT:
    return "a real number";
  case SQLITE_TEXT:
    return "a text";
  case SQLITE_BLOB:
    return "a blob";
  default:
    return "null";
  }
}

// First page of the table of blocks. Every connection has that table: opening checks it.
std::int64_t rootOfBlocks(Connection& connection) {
  Statement entry(connection, "SELECT rootpage FROM sqlite_schema WHERE name = 'block'",
                  "table \"block\" of " + connection.path());
  return entry.step() ? entry.integer(0) : 0;
}

} // namespace

BlockReader::BlockReader(const std::string& path)
    : link(path),
      head(link, "SELECT attribute, number, checksum, typeof(data), length(data) FROM block WHERE rowid = ?1",
           "table \"block\" of " + path),
      pages(link.handle(), RDB2NIMBRA_DIRECT_PAGES != 0 ? rootOfBlocks(link) : 0) {}

BlockReader::~BlockReader() {
  sqlite3_blob_close(blob);
}

void BlockReader::damaged(const std::string& expected, const std::string& found) const {
  throw Error(ErrorKind::damaged, "the database is damaged",
              object + ": expected " + expected + ", found " + found);
}

void BlockReader::open(const Column& column, const BlockLayout& layout, std::uint64_t number) {
  isPastSqlite = false;
  openColumn = nullptr;
  object = "column \"" + column.attribute.name + "\" of " + link.path() + ", block " + std::to_string(number);
  const std::int64_t rowId = column.blockRowIds[number];
  head.reset();
  head.bind(1, rowId);
  if (!head.step()) {
    damaged("a block", "none");
  }
  if (head.type(0) != SQLITE_INTEGER || head.integer(0) != column.id || head.type(1) != SQLITE_INTEGER ||
      head.integer(1) != static_cast<std::int64_t>(number)) {
    damaged("block " + std::to_string(number) + " of attribute " + std::to_string(column.id),
            "block " + head.text(1) + " of attribute " + head.text(0));
  }
  const std::string type = head.text(3);
  if (type != "blob") {
    damaged("a blob", type == "null" ? "null" : "a value of type " + type);
  }
  const bool isIndexed = !column.index.empty();
  const std::uint64_t bytes =
      isIndexed ? column.index[number].bytes : layout.rows(number) * column.attribute.recordBytes();
  if (static_cast<std::uint64_t>(head.integer(4)) != bytes) {
    damaged(std::to_string(bytes) + " bytes", head.text(4));
  }
  expectedChecksum.reset();
  if (head.type(2) != SQLITE_NULL) {
    const std::int64_t value = head.integer(2);
    if (head.type(2) != SQLITE_INTEGER) {
      damaged("an integer as checksum", typeText(head.type(2)));
    }
    if (value < 0 || value > std::numeric_limits<std::uint32_t>::max()) {
      damaged("a checksum of 32 bits", std::to_string(value));
    }
    expectedChecksum = static_cast<std::uint32_t>(value);
  }
  if (isIndexed && expectedChecksum != column.index[number].checksum) {
    damaged("checksum " + std::to_string(column.index[number].checksum) + " as in the block index",
            expectedChecksum ? std::to_string(*expectedChecksum) : "null");
  }
  head.reset();
  openBlob(rowId);
  openColumn = &column;
  openNumber = number;
  openRowId = rowId;
  openBytes = bytes;
}

void BlockReader::openBlob(std::int64_t rowId) {
  link.beginStatement();
  const int status = blob == nullptr
                         ? sqlite3_blob_open(link.handle(), "main", "block", "data", rowId, 0, &blob)
                         : sqlite3_blob_reopen(blob, rowId);
  if (status != SQLITE_OK) {
    sqlite3_blob_close(blob);
    blob = nullptr;
    throw link.failure(object, status);
  }
}

bool BlockReader::readPastSqlite() {
  isPastSqlite = RDB2NIMBRA_DIRECT_PAGES != 0 && expectedChecksum && pages.find(openRowId, openBytes);
  return isPastSqlite;
}

bool BlockReader::readStraight(void* to, std::size_t bytes, std::size_t offset) {
  isPastSqlite = isPastSqlite && pages.seek(offset) && pages.read(static_cast<unsigned char*>(to), bytes);
  return isPastSqlite;
}

void BlockReader::read(void* to, std::size_t bytes, std::size_t offset) {
  if (isPastSqlite && pages.read(static_cast<unsigned char*>(to), bytes)) {
    return;
  }
  isPastSqlite = false;
  const int status = sqlite3_blob_read(blob, to, static_cast<int>(bytes), static_cast<int>(offset));
  if (status != SQLITE_OK) {
    sqlite3_blob_close(blob);
    blob = nullptr;
    throw link.failure(object, status);
  }
}

void BlockReader::refuse(const std::string& finding) const {
  throw Error(ErrorKind::damaged, "the database is damaged", object + ": " + finding);
}

void BlockReader::requireChecksum(std::uint32_t found) const {
  if (expectedChecksum && *expectedChecksum != found) {
    damaged("checksum " + std::to_string(*expectedChecksum), std::to_string(found));
  }
}

} // namespace container
