// SPDX-License-Identifier: BSD-3-Clause
// Opens a database file of unknown origin: every check before the first row is read.
#include "container/read/connection.h"

#include "container/format/sqlite_file.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <new>
#include <sys/stat.h>
#include <system_error>

namespace container {
namespace {

constexpr const char* cannotOpen = "cannot open the database";
constexpr const char* cannotRead = "cannot read the database";
constexpr const char* otherFormat = "the file is not a database of this kind";
constexpr int stepsBetweenCounts = 10'000;

std::string systemText(int number) {
  return std::generic_category().message(number);
}

const char* kindOf(mode_t mode) {
  switch (mode & S_IFMT) {
  case S_IFDIR:
    return "a directory";
  case S_IFIFO:
    return "a named pipe";
  case S_IFCHR:
  case S_IFBLK:
    return "a device";
  case S_IFSOCK:
    return "a socket";
  default:
    return "something else";
  }
}

// Not with a stream, which would group the digits as the host's locale asks for.
std::string hexadecimal(std::uint32_t number, int digits) {
  std::string text;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
    text += "0123456789abcdef"[(number >> shift) & 15];
  }
  return text;
}

std::string tableText(const char* table, const std::string& path) {
  return std::string("table \"") + table + "\" of " + path;
}

// For a file that nobody writes to: SQLite neither locks it nor creates files beside it.
std::string immutableAddress(const std::string& path) {
  std::string address = "file:";
  for (const char character : path) {
    const auto byte = static_cast<unsigned char>(character);
    if (std::isalnum(byte) != 0 || character == '/') {
      address += character;
    } else {
      address += '%' + hexadecimal(byte, 2);
    }
  }
  return address + "?immutable=1";
}

// SQLite opens files of these names beside a database, and would wait for ever on a named pipe.
bool holdsChanges(const char* neighbour) {
  struct stat status {};
  if (stat(neighbour, &status) != 0) {
    return false;
  }
  if (!S_ISREG(status.st_mode)) {
    throw Error(ErrorKind::cannotOpen, cannotOpen,
                std::string(neighbour) + ": expected a regular file or none, found " +
                    kindOf(status.st_mode));
  }
  return status.st_size != 0;
}

} // namespace

FileIdentity requireRegularFile(const std::string& path) {
  if (path.empty() || path.find('\0') != std::string::npos) {
    throw Error(ErrorKind::cannotOpen, cannotOpen,
                "expected the path of a file, found " +
                    std::string(path.empty() ? "no text" : "a zero byte in it"));
  }
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    throw Error(ErrorKind::cannotOpen, cannotOpen,
                path + ": expected a readable file, found: " + systemText(errno));
  }
  if (!S_ISREG(status.st_mode)) {
    throw Error(ErrorKind::cannotOpen, cannotOpen,
                path + ": expected a regular file, found " + kindOf(status.st_mode));
  }
  if (status.st_size == 0) {
    throw Error(ErrorKind::wrongFormat, otherFormat, path + ": expected an SQLite file, found an empty file");
  }
  return {status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size)};
}

Connection::Connection(const std::string& path) : filePath(path), file(requireRegularFile(path)) {
  mostSteps = 10'000'000 + file.bytes;
  openFile(plainPath(filePath), 0);
  lookBeside();
  checkHeader();
  harden();
  checkSchema();
}

// A file in write-ahead mode is opened like any other while its log holds changes; without a log, a reader would create
// one and leave it behind.
void Connection::lookBeside() {
  const char* const name = sqlite3_db_filename(handle(), "main");
  const std::string resolved = name;
  const bool hasLog = holdsChanges(sqlite3_filename_wal(name));
  holdsChanges(sqlite3_filename_journal(name));
  if (const auto header = readHeader(); header[19] == 2 && !hasLog) {
    openFile(immutableAddress(resolved), SQLITE_OPEN_URI);
  }
}

void Connection::openFile(const std::string& name, int flags) {
  sqlite3* opened = nullptr;
  const int status =
      sqlite3_open_v2(name.c_str(), &opened,
                      flags | SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_PRIVATECACHE, nullptr);
  database.reset(opened);
  if (status != SQLITE_OK) {
    const int reason = opened == nullptr ? 0 : sqlite3_system_errno(opened);
    throw Error(ErrorKind::cannotOpen, cannotOpen,
                filePath + ": expected a readable file, found: " +
                    (reason != 0 ? systemText(reason) : sqlite3_errstr(status)));
  }
}

std::array<unsigned char, 100> Connection::readHeader() const {
  // Read through SQLite's own descriptor: closing another one would release the locks that it holds.
  sqlite3_file* reader = nullptr;
  std::array<unsigned char, 100> header{};
  const bool there =
      sqlite3_file_control(handle(), "main", SQLITE_FCNTL_FILE_POINTER, &reader) == SQLITE_OK &&
      reader != nullptr && reader->pMethods != nullptr;
  const int status =
      there ? reader->pMethods->xRead(reader, header.data(), header.size(), 0) : SQLITE_CANTOPEN;
  if (status != SQLITE_OK && status != SQLITE_IOERR_SHORT_READ) {
    throw Error(ErrorKind::cannotOpen, cannotOpen,
                filePath + ": expected a readable file, found: " + sqlite3_errstr(status));
  }
  if (status == SQLITE_IOERR_SHORT_READ || std::memcmp(header.data(), "SQLite format 3", 16) != 0) {
    throw Error(ErrorKind::wrongFormat, otherFormat,
                filePath + ": expected an SQLite file, found other content");
  }
  return header;
}

void Connection::checkHeader() {
  const auto header = readHeader();
  if (const auto found = static_cast<std::uint32_t>(bigEndian(&header[68], 4)); found != applicationId) {
    throw Error(ErrorKind::wrongFormat, otherFormat,
                filePath + ": expected application id 0x" + hexadecimal(applicationId, 8) + ", found 0x" +
                    hexadecimal(found, 8));
  }
  formatVersion = static_cast<std::int32_t>(bigEndian(&header[60], 4));
  if (formatVersion < firstVersion || formatVersion > newestVersion) {
    throw Error(ErrorKind::wrongFormat, otherFormat,
                filePath + ": expected format version " + std::to_string(firstVersion) + " or " +
                    std::to_string(newestVersion) + ", found version " + std::to_string(formatVersion) +
                    (formatVersion > newestVersion ? "; a newer program is needed to read it" : ""));
  }
  // SQLite reads the missing part of a truncated last page as zeros.
  const std::uint64_t bytes = bigEndian(&header[28], 4) * pageBytesIn(header.data());
  const bool countIsValid = bigEndian(&header[24], 4) == bigEndian(&header[92], 4);
  if (countIsValid && file.bytes < bytes) {
    throw Error(ErrorKind::damaged, "the database is damaged",
                filePath + ": expected at least " + std::to_string(bytes) + " bytes, found " +
                    std::to_string(file.bytes));
  }
}

void Connection::harden() {
  sqlite3* const db = handle();
  sqlite3_db_config(db, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(db, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(db, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_db_config(db, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
  // No value can be longer than the file that holds it.
  constexpr std::uint64_t leastLength = 1'000'000;
  constexpr std::uint64_t greatestLength = 2'000'000'000;
  sqlite3_limit(db, SQLITE_LIMIT_LENGTH,
                static_cast<int>(std::clamp(file.bytes, leastLength, greatestLength)));
  sqlite3_limit(db, SQLITE_LIMIT_SQL_LENGTH, 100'000);
  sqlite3_limit(db, SQLITE_LIMIT_EXPR_DEPTH, 20);
  sqlite3_limit(db, SQLITE_LIMIT_COMPOUND_SELECT, 3);
  sqlite3_limit(db, SQLITE_LIMIT_VDBE_OP, 25'000);
  sqlite3_limit(db, SQLITE_LIMIT_FUNCTION_ARG, 8);
  sqlite3_limit(db, SQLITE_LIMIT_ATTACHED, 0);
  sqlite3_limit(db, SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 50);
  sqlite3_limit(db, SQLITE_LIMIT_VARIABLE_NUMBER, 10);
  sqlite3_limit(db, SQLITE_LIMIT_TRIGGER_DEPTH, 1);
  sqlite3_limit(db, SQLITE_LIMIT_WORKER_THREADS, 0);
  sqlite3_progress_handler(db, stepsBetweenCounts, &Connection::countSteps, this);
  // One transaction for the life of the connection: row ids found when opening stay valid until the last read.
  for (const char* pragma :
       {"PRAGMA trusted_schema=OFF", "PRAGMA cell_size_check=ON", "PRAGMA temp_store=MEMORY",
        "PRAGMA mmap_size=0", "PRAGMA cache_size=6", "BEGIN"}) {
    const int status = sqlite3_exec(db, pragma, nullptr, nullptr, nullptr);
    if (status != SQLITE_OK) {
      throw failure(filePath, status);
    }
  }
}

void Connection::checkSchema() {
  for (const TableColumns& wanted : tables) {
    requireTable(wanted);
  }
  // A file of version 1 has nothing of version 2, or a damaged version would turn the checksums off.
  for (const TableColumns& other : tablesOfVersion2) {
    if (formatVersion == firstVersion) {
      refuseTable(other);
    } else {
      requireTable(other);
    }
  }
}

bool Connection::hasColumn(const TableColumns& wanted, const char* column, const std::string& object) {
  const int status = sqlite3_table_column_metadata(handle(), "main", wanted.table, column, nullptr, nullptr,
                                                   nullptr, nullptr, nullptr);
  if (status != SQLITE_OK && status != SQLITE_ERROR) {
    throw failure(object, status);
  }
  return status == SQLITE_OK;
}

void Connection::requireTable(const TableColumns& wanted) {
  const std::string object = tableText(wanted.table, filePath);
  Statement entry(*this, "SELECT type, rootpage FROM sqlite_schema WHERE name = ?1", object);
  entry.bind(1, std::string(wanted.table));
  if (!entry.step()) {
    throw Error(ErrorKind::wrongFormat, otherFormat, object + ": expected a table, found none");
  }
  if (entry.text(0) != "table" || entry.integer(1) <= 0) {
    throw Error(ErrorKind::wrongFormat, otherFormat,
                object + ": expected a table, found a " +
                    (entry.text(0) == "table" ? "virtual table" : entry.text(0)));
  }
  for (const char* column : wanted.columns) {
    if (column != nullptr && !hasColumn(wanted, column, object)) {
      throw Error(ErrorKind::wrongFormat, otherFormat,
                  object + ": expected a column \"" + column + "\", found none");
    }
  }
  refuseMadeUpValues(wanted.table, object);
}

void Connection::refuseTable(const TableColumns& unwanted) {
  const std::string object = tableText(unwanted.table, filePath);
  const bool isShared = unwanted.table == std::string(tables[0].table);
  for (const char* column : unwanted.columns) {
    if (isShared && column != nullptr && hasColumn(unwanted, column, object)) {
      throw Error(ErrorKind::wrongFormat, otherFormat,
                  object + ": expected no column \"" + column + "\" in format version 1, found one");
    }
  }
  Statement entry(*this, "SELECT type FROM sqlite_schema WHERE name = ?1 COLLATE NOCASE", object);
  entry.bind(1, std::string(unwanted.table));
  if (!isShared && entry.step()) {
    throw Error(ErrorKind::wrongFormat, otherFormat,
                object + ": expected no such table in format version 1, found a " + entry.text(0));
  }
}

// Values that are not stored are not bounded by the size of the file: generated columns, and long defaults in every row
// that omits the column.
void Connection::refuseMadeUpValues(const char* table, const std::string& object) {
  Statement made(
      *this, "SELECT name FROM pragma_table_xinfo(?1) WHERE hidden <> 0 OR length(dflt_value) > 16", object);
  made.bind(1, std::string(table));
  if (made.step()) {
    throw Error(ErrorKind::wrongFormat, otherFormat,
                object + ": expected stored values, found a rule that makes them in column \"" +
                    made.text(0) + "\"");
  }
}

int Connection::countSteps(void* self) {
  auto* const connection = static_cast<Connection*>(self);
  connection->steps += stepsBetweenCounts;
  return connection->steps > connection->mostSteps ? 1 : 0;
}

// SQLite also reports exhausted memory when a damaged size overflows. Then the largest value that this file can hold
// still fits into memory.
bool Connection::hasMemoryForContent() const {
  const int mostBytes = sqlite3_limit(handle(), SQLITE_LIMIT_LENGTH, -1);
  void* const room = sqlite3_malloc(mostBytes);
  sqlite3_free(room);
  return room != nullptr;
}

Error Connection::failure(const std::string& object, int status) const {
  switch (status & 0xff) {
  case SQLITE_NOMEM:
    if (!hasMemoryForContent()) {
      throw std::bad_alloc();
    }
    return {ErrorKind::damaged, cannotRead,
            object + ": expected sound content, found a size that the file cannot hold"};
  case SQLITE_BUSY:
    return {ErrorKind::cannotOpen, cannotOpen,
            filePath + ": expected a file that nobody is changing, found it locked; try again when the other "
                       "program is done"};
  case SQLITE_READONLY:
    return {ErrorKind::cannotOpen, cannotOpen,
            filePath +
                ": expected a finished file, found a journal of a change that was broken off beside it; "
                "a program that may write to the file can undo it"};
  case SQLITE_TOOBIG:
    return {ErrorKind::damaged, cannotRead,
            object + ": expected values of at most " +
                std::to_string(sqlite3_limit(handle(), SQLITE_LIMIT_LENGTH, -1)) +
                " bytes, found a larger one"};
  case SQLITE_INTERRUPT:
    return {ErrorKind::damaged, cannotRead,
            object + ": expected sound content, found: more entries than the file can hold"};
  default:
    return {ErrorKind::damaged, cannotRead,
            object + ": expected sound content, found: " + sqlite3_errstr(status)};
  }
}

ValueLimit::ValueLimit(const Connection& connection, std::uint64_t bytes)
    : handle(connection.handle()), before(sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, -1)) {
  sqlite3_limit(handle, SQLITE_LIMIT_LENGTH,
                static_cast<int>(std::min(bytes, static_cast<std::uint64_t>(before))));
}

ValueLimit::~ValueLimit() {
  sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, before);
}

Statement::Statement(Connection& owner, const char* sql, std::string object)
    : connection(owner), subject(std::move(object)) {
  sqlite3_stmt* prepared = nullptr;
  const int status = sqlite3_prepare_v2(connection.handle(), sql, -1, &prepared, nullptr);
  statement.reset(prepared);
  if (status != SQLITE_OK) {
    throw connection.failure(subject, status);
  }
}

void Statement::bind(int parameter, std::int64_t value) {
  if (const int status = sqlite3_bind_int64(statement.get(), parameter, value); status != SQLITE_OK) {
    throw connection.failure(subject, status);
  }
}

void Statement::bind(int parameter, const std::string& value) {
  const int status = sqlite3_bind_text64(statement.get(), parameter, value.data(), value.size(),
                                         SQLITE_TRANSIENT, SQLITE_UTF8);
  if (status != SQLITE_OK) {
    throw connection.failure(subject, status);
  }
}

bool Statement::step() {
  connection.beginStatement();
  const int status = sqlite3_step(statement.get());
  if (status != SQLITE_ROW && status != SQLITE_DONE) {
    throw connection.failure(subject, status);
  }
  return status == SQLITE_ROW;
}

void Statement::reset() {
  sqlite3_reset(statement.get());
  sqlite3_clear_bindings(statement.get());
}

std::string Statement::text(int column) const {
  const auto* const characters = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), column));
  const int bytes = sqlite3_column_bytes(statement.get(), column);
  if (characters == nullptr && type(column) == SQLITE_TEXT) {
    throw std::bad_alloc(); // a text that is there has characters, be it none
  }
  return characters == nullptr ? std::string() : std::string(characters, static_cast<std::size_t>(bytes));
}

} // namespace container
