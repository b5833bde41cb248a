// SPDX-License-Identifier: BSD-3-Clause
// One hardened read-only connection to a database file, and statements on it. Internal to the container.
#pragma once

#include "container/format/error.h"
#include "container/format/file_format.h"

#include <array>
#include <cstdint>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <sys/types.h>

namespace container {

/// Distinguishes one file from another, so that a second connection is known to read the same file as the first.
struct FileIdentity {
  dev_t device = 0;
  ino_t node = 0;
  std::uint64_t bytes = 0;
  bool operator==(const FileIdentity&) const = default;
};

/// The identity of the regular, non-empty file at `path`; opens nothing, so a pipe cannot block. \errors Error for
/// anything else
FileIdentity requireRegularFile(const std::string& path);

/// A connection that sees one unchanging state of the file until it is destroyed.
class Connection {
 public:
  /// \errors Error if the file cannot be opened, is no database of this kind or lacks a table or column
  explicit Connection(const std::string& path);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// SQLite's handle, owned by the connection.
  sqlite3* handle() const { return database.get(); }
  /// The path as it was given.
  const std::string& path() const { return filePath; }
  /// The version of the format: firstVersion to newestVersion.
  std::int32_t version() const { return formatVersion; }
  /// The file that the path led to before it was opened.
  const FileIdentity& identity() const { return file; }
  /// Resets the count of steps that ends a statement that would never end on a damaged file.
  void beginStatement() { steps = 0; }
  /// The Error for a call of SQLite that failed while `object` was read. \errors std::bad_alloc if memory ran out
  Error failure(const std::string& object, int status) const;

 private:
  struct Close {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
  };
  static int countSteps(void* self);
  void openFile(const std::string& name, int flags);
  void lookBeside();
  std::array<unsigned char, 100> readHeader() const;
  void checkHeader();
  void harden();
  void checkSchema();
  bool hasColumn(const TableColumns& wanted, const char* column, const std::string& object);
  void requireTable(const TableColumns& wanted);
  void refuseTable(const TableColumns& unwanted);
  void refuseMadeUpValues(const char* table, const std::string& object);
  bool hasMemoryForContent() const;

  std::string filePath;
  FileIdentity file;
  std::int32_t formatVersion = 0;
  std::uint64_t steps = 0;
  std::uint64_t mostSteps = 0;
  std::unique_ptr<sqlite3, Close> database;
};

/// While it lives, statements on a connection fail where a value has more bytes than these, before memory is allocated
/// for it. The connection outlives it.
class ValueLimit {
 public:
  ValueLimit(const Connection& connection, std::uint64_t bytes);
  ValueLimit(const ValueLimit&) = delete;
  ValueLimit& operator=(const ValueLimit&) = delete;
  ~ValueLimit();

 private:
  sqlite3* handle;
  int before;
};

/// A prepared statement; parameters and columns count from 1 and 0 as in SQLite. The connection outlives it.
/// \errors Error, or std::bad_alloc, from every operation in which SQLite fails
class Statement {
 public:
  /// \param object  what the statement reads, for error texts, such as `table "block" of scan.rdbx`
  Statement(Connection& connection, const char* sql, std::string object);

  void bind(int parameter, std::int64_t value);
  void bind(int parameter, const std::string& value);
  /// Goes to the next row; false after the last one.
  bool step();
  /// Makes the statement ready for other parameters.
  void reset();

  // A column of the current row: the SQLITE_... number of its type, and its value as SQLite converts it.
  int type(int column) const { return sqlite3_column_type(statement.get(), column); }
  std::int64_t integer(int column) const { return sqlite3_column_int64(statement.get(), column); }
  double real(int column) const { return sqlite3_column_double(statement.get(), column); }
  std::string text(int column) const;
  const std::string& object() const { return subject; }

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }
  };
  Connection& connection;
  std::string subject;
  std::unique_ptr<sqlite3_stmt, Finalize> statement;
};

} // namespace container
