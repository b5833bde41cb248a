// SPDX-License-Identifier: BSD-3-Clause
// Inserts the rows of a database file that is being made.
#include "container/write/output_file.h"

#include "container/format/error.h"
#include "container/format/file_format.h"
#include "container/format/sqlite_file.h"

namespace container {
namespace {

int bindText(sqlite3_stmt* statement, int parameter, const std::string& text) {
  return sqlite3_bind_text64(statement, parameter, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

} // namespace

OutputFile::OutputFile(const std::string& path, std::int32_t version) : shownPath(path), file(path) {
  sqlite3* opened = nullptr;
  const int status =
      sqlite3_open_v2(plainPath(file.path()).c_str(), &opened,
                      SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_PRIVATECACHE, nullptr);
  database.reset(opened);
  check(status);
  // The file has a name of its own until it is complete, so a journal would protect nothing.
  execute("PRAGMA page_size=65536; PRAGMA auto_vacuum=NONE; PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;"
          "PRAGMA locking_mode=EXCLUSIVE; PRAGMA temp_store=MEMORY; PRAGMA cache_size=256;"
          "PRAGMA secure_delete=OFF; BEGIN;");
  execute("PRAGMA application_id=" + std::to_string(applicationId) + ";" +
          "PRAGMA user_version=" + std::to_string(version) + ";");
  execute(version == firstVersion ? schemaOfVersion1 : schemaOfVersion2);
  execute(schemaOfAllVersions);
  blockRow = prepare("INSERT INTO block (attribute, number, checksum, data) VALUES (?1, ?2, ?3, ?4)");
  if (version != firstVersion) {
    indexRow = prepare(
        "INSERT INTO block_index (attribute, number, encoding, checksum, bytes) VALUES (?1, ?2, ?3, ?4, ?5)");
    extentRow = prepare("INSERT INTO extent (attribute, number, component, minimum, maximum, missing) "
                        "VALUES (?1, ?2, ?3, ?4, ?5, ?6)");
  }
}

void OutputFile::check(int status) const {
  if (status != SQLITE_OK && status != SQLITE_DONE && status != SQLITE_ROW) {
    throw Error(ErrorKind::cannotWrite, "cannot write the database",
                shownPath + ": expected room for its content, found: " + sqlite3_errstr(status));
  }
}

void OutputFile::execute(const std::string& sql) const {
  check(sqlite3_exec(database.get(), sql.c_str(), nullptr, nullptr, nullptr));
}

OutputFile::Row OutputFile::prepare(const char* sql) const {
  sqlite3_stmt* statement = nullptr;
  check(sqlite3_prepare_v2(database.get(), sql, -1, &statement, nullptr));
  return Row(statement);
}

void OutputFile::insertAttribute(std::int64_t id, const Attribute& attribute) {
  const Row row = prepare("INSERT INTO attribute (id, name, type, length, scale, \"offset\", unit, title, "
                          "description) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)");
  check(sqlite3_bind_int64(row.get(), 1, id));
  check(bindText(row.get(), 2, attribute.name));
  check(bindText(row.get(), 3, std::string(name(attribute.type))));
  check(sqlite3_bind_int64(row.get(), 4, attribute.length));
  check(sqlite3_bind_double(row.get(), 5, attribute.scale));
  check(sqlite3_bind_double(row.get(), 6, attribute.offset));
  int parameter = 7;
  for (const std::string* text : {&attribute.unit, &attribute.title, &attribute.description}) {
    check(text->empty() ? sqlite3_bind_null(row.get(), parameter) : bindText(row.get(), parameter, *text));
    ++parameter;
  }
  check(sqlite3_step(row.get()));
}

void OutputFile::insertBlock(std::int64_t attribute, std::uint64_t number, const void* data,
                             std::size_t bytes, std::optional<std::uint32_t> checksum) {
  sqlite3_stmt* const row = blockRow.get();
  check(sqlite3_bind_int64(row, 1, attribute));
  check(sqlite3_bind_int64(row, 2, static_cast<sqlite3_int64>(number)));
  check(checksum ? sqlite3_bind_int64(row, 3, *checksum) : sqlite3_bind_null(row, 3));
  check(sqlite3_bind_blob64(row, 4, data, bytes, SQLITE_STATIC));
  check(sqlite3_step(row));
  check(sqlite3_reset(row));
  check(sqlite3_clear_bindings(row));
}

void OutputFile::insertItem(const std::string& name, const std::string& value) {
  const Row row = prepare("INSERT INTO metadata (name, value) VALUES (?1, ?2)");
  check(bindText(row.get(), 1, name));
  check(bindText(row.get(), 2, value));
  check(sqlite3_step(row.get()));
}

void OutputFile::insertLayout(const DatabaseRow& layout) {
  const Row row = prepare("INSERT INTO database (records, block_rows) VALUES (?1, ?2)");
  check(sqlite3_bind_int64(row.get(), 1, layout.records));
  check(sqlite3_bind_int64(row.get(), 2, layout.blockRows));
  check(sqlite3_step(row.get()));
}

void OutputFile::insertLayout(const DatabaseRow& layout, std::uint32_t catalogueChecksum,
                              std::optional<std::uint32_t> extentChecksum) {
  const Row row = prepare("INSERT INTO database (records, block_rows, catalogue_checksum, extent_checksum) "
                          "VALUES (?1, ?2, ?3, ?4)");
  check(sqlite3_bind_int64(row.get(), 1, layout.records));
  check(sqlite3_bind_int64(row.get(), 2, layout.blockRows));
  check(sqlite3_bind_int64(row.get(), 3, catalogueChecksum));
  check(extentChecksum ? sqlite3_bind_int64(row.get(), 4, *extentChecksum) : sqlite3_bind_null(row.get(), 4));
  check(sqlite3_step(row.get()));
}

void OutputFile::insertIndex(const BlockRow& block) {
  sqlite3_stmt* const row = indexRow.get();
  check(sqlite3_bind_int64(row, 1, block.attribute));
  check(sqlite3_bind_int64(row, 2, block.number));
  check(block.encoding ? bindText(row, 3, std::string(*block.encoding)) : sqlite3_bind_null(row, 3));
  check(sqlite3_bind_int64(row, 4, block.checksum));
  check(sqlite3_bind_int64(row, 5, block.bytes));
  check(sqlite3_step(row));
  check(sqlite3_reset(row));
}

void OutputFile::insertExtent(const ExtentRow& extent) {
  sqlite3_stmt* const row = extentRow.get();
  check(sqlite3_bind_int64(row, 1, extent.attribute));
  check(sqlite3_bind_int64(row, 2, extent.number));
  check(sqlite3_bind_int64(row, 3, extent.component));
  check(extent.minimum ? sqlite3_bind_double(row, 4, *extent.minimum) : sqlite3_bind_null(row, 4));
  check(extent.maximum ? sqlite3_bind_double(row, 5, *extent.maximum) : sqlite3_bind_null(row, 5));
  check(sqlite3_bind_int64(row, 6, extent.missing));
  check(sqlite3_step(row));
  check(sqlite3_reset(row));
}

void OutputFile::finish() {
  execute("COMMIT");
  blockRow.reset();
  indexRow.reset();
  extentRow.reset();
  check(sqlite3_close(database.get()));
  static_cast<void>(
      database.release()); // closed; after a failure the destructor would still have to close it
  file.putInPlace();
}

} // namespace container
