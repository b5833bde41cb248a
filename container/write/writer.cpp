// SPDX-License-Identifier: BSD-3-Clause
// Makes a database file: columns are gathered to blocks and inserted in one transaction.
#include "container/write/writer.h"

#include "container/format/checksum.h"
#include "container/format/file_format.h"
#include "container/format/sqlite_file.h"
#include "container/write/temporary_file.h"
#include "platform/client/error.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <set>
#include <sqlite3.h>
#include <utility>

namespace riegl::rdb::embedded {
namespace {

constexpr std::uint64_t mostBlockBytes = 900'000'000; // SQLite takes values of up to 1,000,000,000 bytes

struct Closer {
  void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
  void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
};

[[noreturn]] void refuse(const std::string& object, const std::string& expected, const std::string& found) {
  throw Error(ErrorKind::wrongUse, "the database cannot be written so",
              object + ": expected " + expected + ", found " + found);
}

/// One attribute and the records of it that do not make a block yet.
struct OpenColumn {
  AttributeSpec spec;
  std::size_t recordBytes = 0;
  std::vector<unsigned char> gathered{};
};

void checkSpec(const AttributeSpec& spec, std::uint32_t blockRows) {
  const std::string object = "column \"" + spec.name + "\"";
  if (spec.name.empty()) {
    refuse(object, "a name", "none");
  }
  if (spec.length < 1 || spec.length > maximumLength) {
    refuse(object, "a length of 1 to " + std::to_string(maximumLength), std::to_string(spec.length));
  }
  if (!std::isfinite(spec.scale) || spec.scale == 0) {
    refuse(object, "a finite scale other than 0", std::to_string(spec.scale));
  }
  if (!std::isfinite(spec.offset)) {
    refuse(object, "a finite offset", std::to_string(spec.offset));
  }
  const std::uint64_t blockBytes = std::uint64_t{spec.length} * byteSize(spec.type) * blockRows;
  if (blockBytes > mostBlockBytes) {
    refuse(object, "blocks of at most " + std::to_string(mostBlockBytes) + " bytes",
           std::to_string(blockBytes));
  }
}

} // namespace

struct Writer::State {
  State(const std::string& path, WriterSettings wanted);
  void requireUsable() const;
  void check(int status) const;
  void execute(const char* sql) const;
  std::unique_ptr<sqlite3_stmt, Closer> prepare(const char* sql) const;
  void insertCatalogueRow(std::size_t index);
  void insertBlock(std::size_t index, std::uint64_t number, const void* data, std::size_t bytes);
  void writePart(std::uint64_t part, std::vector<const unsigned char*>& from);
  void flushRest();
  void insertDatabaseRow();
  void insertItems();

  std::string shownPath;
  WriterSettings settings;
  TemporaryFile file;
  std::unique_ptr<sqlite3, Closer> database;
  std::unique_ptr<sqlite3_stmt, Closer> blockInsert;
  std::vector<OpenColumn> columns;
  std::set<std::string> names;
  std::map<std::string, std::string> items;
  std::uint64_t rowCount = 0;
  bool usable = true;
};

Writer::State::State(const std::string& path, WriterSettings wanted)
    : shownPath(path), settings(wanted), file(path) {
  if (settings.blockRows == 0) {
    refuse(path, "at least one record a block", "0");
  }
  sqlite3* opened = nullptr;
  const int status =
      sqlite3_open_v2(plainPath(file.path()).c_str(), &opened,
                      SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_PRIVATECACHE, nullptr);
  database.reset(opened);
  check(status);
  // The file has a name of its own until it is whole, so that a journal would protect nothing.
  execute("PRAGMA page_size=65536; PRAGMA auto_vacuum=NONE; PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;"
          "PRAGMA locking_mode=EXCLUSIVE; PRAGMA temp_store=MEMORY; PRAGMA cache_size=256;"
          "PRAGMA secure_delete=OFF; BEGIN;");
  execute(("PRAGMA application_id=" + std::to_string(applicationId) + ";" +
           "PRAGMA user_version=" + std::to_string(formatVersion) + ";")
              .c_str());
  execute(schema);
  blockInsert = prepare("INSERT INTO block (attribute, number, checksum, data) VALUES (?1, ?2, ?3, ?4)");
}

void Writer::State::requireUsable() const {
  if (!usable) {
    refuse(shownPath, "a writer in use", "one that has finished or failed");
  }
}

void Writer::State::check(int status) const {
  if (status != SQLITE_OK && status != SQLITE_DONE && status != SQLITE_ROW) {
    throw Error(ErrorKind::cannotWrite, "cannot write the database",
                shownPath + ": expected room for its content, found: " + sqlite3_errstr(status));
  }
}

void Writer::State::execute(const char* sql) const {
  check(sqlite3_exec(database.get(), sql, nullptr, nullptr, nullptr));
}

std::unique_ptr<sqlite3_stmt, Closer> Writer::State::prepare(const char* sql) const {
  sqlite3_stmt* statement = nullptr;
  check(sqlite3_prepare_v2(database.get(), sql, -1, &statement, nullptr));
  return std::unique_ptr<sqlite3_stmt, Closer>(statement);
}

namespace {

int bindText(sqlite3_stmt* statement, int parameter, const std::string& text) {
  return sqlite3_bind_text64(statement, parameter, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

} // namespace

void Writer::State::insertCatalogueRow(std::size_t index) {
  const AttributeSpec& spec = columns[index].spec;
  const auto row = prepare("INSERT INTO attribute (id, name, type, length, scale, \"offset\", unit, title, "
                           "description) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)");
  check(sqlite3_bind_int64(row.get(), 1, static_cast<sqlite3_int64>(index) + 1));
  check(bindText(row.get(), 2, spec.name));
  check(bindText(row.get(), 3, std::string(name(spec.type))));
  check(sqlite3_bind_int64(row.get(), 4, spec.length));
  check(sqlite3_bind_double(row.get(), 5, spec.scale));
  check(sqlite3_bind_double(row.get(), 6, spec.offset));
  int parameter = 7;
  for (const std::string* text : {&spec.unit, &spec.title, &spec.description}) {
    check(text->empty() ? sqlite3_bind_null(row.get(), parameter) : bindText(row.get(), parameter, *text));
    ++parameter;
  }
  check(sqlite3_step(row.get()));
}

void Writer::State::insertBlock(std::size_t index, std::uint64_t number, const void* data,
                                std::size_t bytes) {
  sqlite3_stmt* const row = blockInsert.get();
  check(sqlite3_bind_int64(row, 1, static_cast<sqlite3_int64>(index) + 1));
  check(sqlite3_bind_int64(row, 2, static_cast<sqlite3_int64>(number)));
  check(settings.checksums ? sqlite3_bind_int64(row, 3, crc32(0, data, bytes)) : sqlite3_bind_null(row, 3));
  check(sqlite3_bind_blob64(row, 4, data, bytes, SQLITE_STATIC));
  check(sqlite3_step(row));
  check(sqlite3_reset(row));
  check(sqlite3_clear_bindings(row));
}

// Takes records that end no later than the block they begin in; whole blocks go past the gathering place.
void Writer::State::writePart(std::uint64_t part, std::vector<const unsigned char*>& from) {
  const std::uint64_t filled = rowCount % settings.blockRows;
  const bool completes = filled + part == settings.blockRows;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    OpenColumn& column = columns[i];
    const auto bytes = static_cast<std::size_t>(part * column.recordBytes);
    if (filled == 0 && completes) {
      insertBlock(i, rowCount / settings.blockRows, from[i], bytes);
    } else {
      column.gathered.insert(column.gathered.end(), from[i], from[i] + bytes);
      if (completes) {
        insertBlock(i, rowCount / settings.blockRows, column.gathered.data(), column.gathered.size());
        column.gathered.clear();
      }
    }
    from[i] += bytes;
  }
  rowCount += part;
}

void Writer::State::flushRest() {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (!columns[i].gathered.empty()) {
      insertBlock(i, rowCount / settings.blockRows, columns[i].gathered.data(), columns[i].gathered.size());
    }
  }
}

void Writer::State::insertDatabaseRow() {
  const auto row = prepare("INSERT INTO database (records, block_rows) VALUES (?1, ?2)");
  check(sqlite3_bind_int64(row.get(), 1, static_cast<sqlite3_int64>(rowCount)));
  check(sqlite3_bind_int64(row.get(), 2, settings.blockRows));
  check(sqlite3_step(row.get()));
}

void Writer::State::insertItems() {
  const auto row = prepare("INSERT INTO metadata (name, value) VALUES (?1, ?2)");
  for (const auto& [name, value] : items) {
    check(bindText(row.get(), 1, name));
    check(bindText(row.get(), 2, value));
    check(sqlite3_step(row.get()));
    check(sqlite3_reset(row.get()));
  }
}

Writer::Writer(const std::string& path, WriterSettings settings)
    : state(std::make_unique<State>(path, settings)) {}

Writer::~Writer() = default;

std::size_t Writer::addAttribute(const AttributeSpec& spec) {
  state->requireUsable();
  if (state->rowCount != 0) {
    refuse("column \"" + spec.name + "\"", "all attributes before the first record",
           std::to_string(state->rowCount) + " records written");
  }
  checkSpec(spec, state->settings.blockRows);
  if (!state->names.insert(spec.name).second) {
    refuse("column \"" + spec.name + "\"", "a name of its own", "an attribute of that name");
  }
  state->columns.push_back({spec, spec.length * byteSize(spec.type)});
  return state->columns.size() - 1;
}

void Writer::setMetadata(const std::string& name, const std::string& value) {
  state->requireUsable();
  state->items[name] = value;
}

void Writer::write(std::uint64_t rows, const std::vector<const void*>& columns) {
  state->requireUsable();
  if (columns.size() != state->columns.size()) {
    refuse(state->shownPath, std::to_string(state->columns.size()) + " columns",
           std::to_string(columns.size()));
  }
  if (rows == 0) {
    return;
  }
  if (columns.empty()) {
    refuse(state->shownPath, "an attribute before the first record", "none");
  }
  std::vector<const unsigned char*> from;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i] == nullptr) {
      refuse("column \"" + state->columns[i].spec.name + "\"", "records", "a null pointer");
    }
    from.push_back(static_cast<const unsigned char*>(columns[i]));
  }
  state->usable = false; // until all of it is written
  const std::uint64_t end = state->rowCount + rows;
  while (state->rowCount < end) {
    const std::uint64_t room = state->settings.blockRows - state->rowCount % state->settings.blockRows;
    state->writePart(std::min(room, end - state->rowCount), from);
  }
  state->usable = true;
}

std::uint64_t Writer::rows() const {
  return state->rowCount;
}

void Writer::finish() {
  state->requireUsable();
  state->usable = false;
  for (std::size_t i = 0; i < state->columns.size(); ++i) {
    state->insertCatalogueRow(i);
  }
  state->flushRest();
  state->insertDatabaseRow();
  state->insertItems();
  state->execute("COMMIT");
  state->blockInsert.reset();
  state->check(sqlite3_close(state->database.get()));
  static_cast<void>(state->database.release()); // closed; after a failure it would still be ours to close
  state->file.putInPlace();
}

} // namespace riegl::rdb::embedded
