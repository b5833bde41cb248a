// SPDX-License-Identifier: BSD-3-Clause
// Damages a database on purpose, in place, so that tests can see it noticed.
#include "container/testing/damage.h"

#include "apps/rdbtool/input_file.h"
#include "apps/rdbtool/tool_error.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <sqlite3.h>
#include <system_error>
#include <variant>
#include <vector>

namespace rdbtool {

namespace {

using Value = std::variant<std::int64_t, std::string, std::vector<std::byte>>;

/// The database as SQLite sees it, open for writing.
class Surgery {
 public:
  explicit Surgery(const std::string& filePath) : path(filePath) {
    sqlite3* opened = nullptr;
    // Absolute, since SQLite may take "file:..." and ":memory:" for something else than a path.
    const std::string absolute = std::filesystem::absolute(filePath).string();
    const int status = sqlite3_open_v2(absolute.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    database.reset(opened);
    check(status == SQLITE_OK);
  }

  /// Runs one statement with values bound to its parameters; hands back the rows it changed.
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

  [[noreturn]] void refuse(const std::string& finding) const { throw failed(path + ": " + finding); }

 private:
  struct Close {
    void operator()(sqlite3* opened) const { sqlite3_close(opened); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Close>;

  void check(bool well) const {
    if (!well) {
      refuse(std::string("expected a database to damage, found: ") +
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

  std::string path;
  std::unique_ptr<sqlite3, Close> database;
};

const std::string whereBlock =
    " WHERE attribute = (SELECT id FROM attribute WHERE name = ?1) AND number = ?2";

bool touchesBlock(const DamageRequest& request) {
  return request.flipByte || request.shortenBytes || request.clearChecksum || request.dropBlock;
}

bool touchesDatabase(const DamageRequest& request) {
  return request.storedType || request.records || request.blockRows || request.applicationId ||
         request.version || request.dropTable;
}

void rewriteBlock(Surgery& surgery, const DamageRequest& request) {
  const std::vector<Value> key = {request.attribute, request.block};
  std::vector<std::byte> data = surgery.bytes("SELECT data FROM block" + whereBlock, key);
  const std::string found = "found " + std::to_string(data.size());
  if (request.flipByte) {
    if (*request.flipByte >= data.size()) {
      surgery.refuse("expected a block of more than " + std::to_string(*request.flipByte) + " bytes, " +
                     found);
    }
    data[static_cast<std::size_t>(*request.flipByte)] ^= std::byte{0xFF};
  }
  if (request.shortenBytes) {
    if (*request.shortenBytes > data.size()) {
      surgery.refuse("expected a block of at least " + std::to_string(*request.shortenBytes) + " bytes, " +
                     found);
    }
    data.resize(data.size() - static_cast<std::size_t>(*request.shortenBytes));
  }
  // An empty vector may have no address, and NULL would be no blob.
  surgery.run("UPDATE block SET data = coalesce(?3, x'')" + whereBlock,
              {request.attribute, request.block, data});
}

void damageBlock(Surgery& surgery, const DamageRequest& request) {
  const std::vector<Value> key = {request.attribute, request.block};
  if (surgery.run("UPDATE block SET number = number" + whereBlock, key) == 0) {
    surgery.refuse("expected block " + std::to_string(request.block) + " of attribute \"" +
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
    surgery.refuse("expected attribute \"" + request.attribute + "\", found none");
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
    const std::string& table = *request.dropTable;
    if (table != "database" && table != "attribute" && table != "block" && table != "metadata") {
      throw wrongUse("--drop-table: expected database, attribute, block or metadata, found \"" + table +
                     "\"");
    }
    surgery.run("DROP TABLE " + table);
  }
}

void damageFile(const DamageRequest& request) {
  const std::uint64_t size = std::filesystem::file_size(request.file);
  if (request.flipFileByte) {
    if (*request.flipFileByte >= size) {
      throw failed(request.file + ": expected a file of more than " + std::to_string(*request.flipFileByte) +
                   " bytes, found " + std::to_string(size));
    }
    std::fstream file(request.file, std::ios::in | std::ios::out | std::ios::binary);
    const auto offset = static_cast<std::streamoff>(*request.flipFileByte);
    file.seekg(offset);
    const int byte = file.get();
    file.seekp(offset);
    file.put(static_cast<char>(byte ^ 0xFF));
    file.close();
    if (!file) {
      throw failed(request.file + ": expected a file to write to, found that it refuses");
    }
  }
  if (request.truncateBytes) {
    if (*request.truncateBytes > size) {
      throw failed(request.file + ": expected a file of at least " + std::to_string(*request.truncateBytes) +
                   " bytes, found " + std::to_string(size));
    }
    std::filesystem::resize_file(request.file, *request.truncateBytes);
  }
}

} // namespace

void damage(const DamageRequest& request) {
  const bool block = touchesBlock(request);
  const bool database = touchesDatabase(request);
  if (!block && !database && !request.flipFileByte && !request.truncateBytes) {
    throw wrongUse("damage: expected at least one option that says what to damage, found none");
  }
  if (request.attribute.empty() && (block || request.storedType)) {
    throw wrongUse("damage: expected --attribute beside an option for one block or type, found none");
  }
  requireReadableFile(request.file);
  if (block || database) {
    Surgery surgery(request.file);
    if (block) {
      damageBlock(surgery, request);
    }
    if (database) {
      damageDatabase(surgery, request);
    }
  }
  damageFile(request);
}

} // namespace rdbtool
