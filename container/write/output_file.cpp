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

OutputFile::OutputFile(const std::string& path) : shownPath(path), file(path) {
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
          "PRAGMA user_version=" + std::to_string(formatVersion) + ";");
  execute(schema);
  blockRow = prepare("INSERT INTO block (attribute, number, checksum, data) VALUES (?1, ?2, ?3, ?4)");
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

void OutputFile::insertLayout(std::uint64_t records, std::uint32_t blockRows) {
  const Row row = prepare("INSERT INTO database (records, block_rows) VALUES (?1, ?2)");
  check(sqlite3_bind_int64(row.get(), 1, static_cast<sqlite3_int64>(records)));
  check(sqlite3_bind_int64(row.get(), 2, blockRows));
  check(sqlite3_step(row.get()));
}

void OutputFile::finish() {
  execute("COMMIT");
  blockRow.reset();
  check(sqlite3_close(database.get()));
  static_cast<void>(
      database.release()); // closed; after a failure the destructor would still have to close it
  file.putInPlace();
}

} // namespace container
