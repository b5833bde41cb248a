// SPDX-License-Identifier: BSD-3-Clause
// Damages a database on purpose, in place, so that tests can check that it is noticed.
#include "container/testing/damage.h"

#include "container/format/error.h"
#include "container/format/file_format.h"
#include "container/format/sqlite_file.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sqlite3.h>
#include <system_error>
#include <variant>
#include <vector>

namespace container {
namespace {

using Value = std::variant<std::int64_t, std::string, std::vector<std::byte>>;

[[noreturn]] void refuse(ErrorKind kind, const DamageRequest& request, const std::string& finding) {
  throw Error(kind, "the database cannot be damaged so", request.file + ": " + finding);
}

/// The database as SQLite sees it, open for writing.
class Surgery {
 public:
  explicit Surgery(const DamageRequest& wanted) : request(wanted) {
    sqlite3* opened = nullptr;
    const int status =
        sqlite3_open_v2(plainPath(request.file).c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    database.reset(opened);
    check(status == SQLITE_OK);
  }

  /// Runs one statement with values bound to its parameters. \return how many rows it changed
  int run(const std::string& text, const std::vector<Value>& values = {}) {
    const Statement statement = prepare(text, values);
    int status = SQLITE_ROW;
    while (status == SQLITE_ROW) {
      status = sqlite3_step(statement.get());
    }
    check(status == SQLITE_DONE);
    return sqlite3_changes(database.get());
  }

  /// The first column of the first row as bytes; empty where there is no row.
  std::vector<std::byte> bytes(const std::string& text, const std::vector<Value>& values) {
    const Statement statement = prepare(text, values);
    const int status = sqlite3_step(statement.get());
    check(status == SQLITE_ROW || status == SQLITE_DONE);
    if (status == SQLITE_DONE) {
      return {};
    }
    const auto* data = static_cast<const std::byte*>(sqlite3_column_blob(statement.get(), 0));
    return {data, data + sqlite3_column_bytes(statement.get(), 0)};
  }

  [[noreturn]] void refuseMissing(const std::string& finding) const {
    refuse(ErrorKind::damaged, request, finding);
  }

 private:
  struct Close {
    void operator()(sqlite3* opened) const { sqlite3_close(opened); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Close>;

  void check(bool well) const {
    if (!well) {
      refuse(ErrorKind::cannotWrite, request,
             std::string("expected a database to damage, found: ") +
                 (database ? sqlite3_errmsg(database.get()) : "no memory"));
    }
  }

  Statement prepare(const std::string& text, const std::vector<Value>& values) {
    sqlite3_stmt* prepared = nullptr;
    check(sqlite3_prepare_v2(database.get(), text.c_str(), -1, &prepared, nullptr) == SQLITE_OK);
    Statement statement(prepared);
    int place = 0;
    for (const Value& value : values) {
      ++place;
      if (const auto* number = std::get_if<std::int64_t>(&value)) {
        check(sqlite3_bind_int64(prepared, place, *number) == SQLITE_OK);
      } else if (const auto* letters = std::get_if<std::string>(&value)) {
        check(sqlite3_bind_text(prepared, place, letters->c_str(), -1, SQLITE_TRANSIENT) == SQLITE_OK);
      } else {
        const auto& blob = std::get<std::vector<std::byte>>(value);
        check(sqlite3_bind_blob64(prepared, place, blob.data(), blob.size(), SQLITE_TRANSIENT) == SQLITE_OK);
      }
    }
    return statement;
  }

  const DamageRequest& request;
  std::unique_ptr<sqlite3, Close> database;
};

const std::string whereBlock =
    " WHERE attribute = (SELECT id FROM attribute WHERE name = ?1) AND number = ?2";

void rewriteBlock(Surgery& surgery, const DamageRequest& request) {
  const std::vector<Value> key = {request.attribute, request.block};
  std::vector<std::byte> data = surgery.bytes("SELECT data FROM block" + whereBlock, key);
  const std::string found = "found " + std::to_string(data.size());
  if (request.flipByte) {
    if (*request.flipByte >= data.size()) {
      surgery.refuseMissing("expected a block of more than " + std::to_string(*request.flipByte) +
                            " bytes, " + found);
    }
    data[static_cast<std::size_t>(*request.flipByte)] ^= std::byte{0xFF};
  }
  if (request.shortenBytes) {
    if (*request.shortenBytes > data.size()) {
      surgery.refuseMissing("expected a block of at least " + std::to_string(*request.shortenBytes) +
                            " bytes, " + found);
    }
    data.resize(data.size() - static_cast<std::size_t>(*request.shortenBytes));
  }
  // An empty vector may have no address, which would be bound as NULL.
  surgery.run("UPDATE block SET data = coalesce(?3, x'')" + whereBlock,
              {request.attribute, request.block, data});
}

void damageBlock(Surgery& surgery, const DamageRequest& request) {
  const std::vector<Value> key = {request.attribute, request.block};
  if (surgery.run("UPDATE block SET number = number" + whereBlock, key) == 0) {
    surgery.refuseMissing("expected block " + std::to_string(request.block) + " of attribute \"" +
                          request.attribute + "\", found none");
  }
  if (request.flipByte || request.shortenBytes) {
    rewriteBlock(surgery, request);
  }
  if (request.clearChecksum) {
    surgery.run("UPDATE block SET checksum = NULL" + whereBlock, key);
  }
  if (request.dropBlock) {
    surgery.run("DELETE FROM block" + whereBlock, key);
  }
}

void damageDatabase(Surgery& surgery, const DamageRequest& request) {
  if (request.storedType && surgery.run("UPDATE attribute SET type = ?1 WHERE name = ?2",
                                        {*request.storedType, request.attribute}) == 0) {
    surgery.refuseMissing("expected attribute \"" + request.attribute + "\", found none");
  }
  if (request.records) {
    surgery.run("UPDATE database SET records = ?1", {*request.records});
  }
  if (request.blockRows) {
    surgery.run("UPDATE database SET block_rows = ?1", {*request.blockRows});
  }
  // A pragma takes no parameter; these are numbers.
  if (request.applicationId) {
    surgery.run("PRAGMA application_id = " + std::to_string(*request.applicationId));
  }
  if (request.version) {
    surgery.run("PRAGMA user_version = " + std::to_string(*request.version));
  }
  if (request.dropTable) {
    surgery.run("DROP TABLE " + *request.dropTable);
  }
}

void flipByteOfFile(const DamageRequest& request) {
  std::fstream file(request.file, std::ios::in | std::ios::out | std::ios::binary);
  const auto offset = static_cast<std::streamoff>(*request.flipFileByte);
  file.seekg(offset);
  const int byte = file.get();
  file.seekp(offset);
  file.put(static_cast<char>(byte ^ 0xFF));
  file.close();
  if (!file) {
    refuse(ErrorKind::cannotWrite, request, "expected a file to write to, found that it refuses");
  }
}

void damageFile(const DamageRequest& request) {
  const std::uint64_t size = std::filesystem::file_size(request.file);
  const std::string found = std::to_string(size);
  if (request.flipFileByte) {
    if (*request.flipFileByte >= size) {
      refuse(ErrorKind::damaged, request,
             "expected a file of more than " + std::to_string(*request.flipFileByte) + " bytes, found " +
                 found);
    }
    flipByteOfFile(request);
  }
  if (request.truncateBytes) {
    if (*request.truncateBytes > size) {
      refuse(ErrorKind::damaged, request,
             "expected a file of at least " + std::to_string(*request.truncateBytes) + " bytes, found " +
                 found);
    }
    std::filesystem::resize_file(request.file, *request.truncateBytes);
  }
}

void checkRequest(const DamageRequest& request) {
  if (!request.changesBlock() && !request.changesTables() && !request.changesFile()) {
    refuse(ErrorKind::wrongUse, request, "expected at least one change, found none");
  }
  if (request.attribute.empty() && request.needsAttribute()) {
    refuse(ErrorKind::wrongUse, request,
           "expected the name of an attribute for a change of block or type, found none");
  }
  if (request.dropsUnknownTable()) {
    refuse(ErrorKind::wrongUse, request,
           "expected table database, attribute, block, metadata, block_index or extent, found \"" +
               *request.dropTable + "\"");
  }
  std::error_code problem;
  if (!std::filesystem::is_regular_file(request.file, problem)) {
    refuse(ErrorKind::cannotOpen, request, "expected a regular file, found none");
  }
}

} // namespace

bool DamageRequest::changesBlock() const {
  return flipByte || shortenBytes || clearChecksum || dropBlock;
}

bool DamageRequest::changesTables() const {
  return storedType || records || blockRows || applicationId || version || dropTable;
}

bool DamageRequest::changesFile() const {
  return flipFileByte || truncateBytes;
}

bool DamageRequest::needsAttribute() const {
  return changesBlock() || storedType;
}

bool DamageRequest::dropsUnknownTable() const {
  const auto isNamed = [this](const TableColumns& known) { return known.table == *dropTable; };
  return dropTable && std::none_of(tables.begin(), tables.end(), isNamed) &&
         std::none_of(tablesOfVersion2.begin(), tablesOfVersion2.end(), isNamed);
}

void damage(const DamageRequest& request) {
  checkRequest(request);
  if (request.changesBlock() || request.changesTables()) {
    Surgery surgery(request);
    if (request.changesBlock()) {
      damageBlock(surgery, request);
    }
    if (request.changesTables()) {
      damageDatabase(surgery, request);
    }
  }
  damageFile(request);
}

} // namespace container
