// SPDX-License-Identifier: BSD-3-Clause
// Opening a database file: the catalogue, checked against itself and the blocks before it is believed.
#include "container/read/database.h"

#include "container/write/writer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <thread>

#ifdef __linux__
#include <sched.h>
#endif

namespace riegl::rdb::embedded {
namespace {

constexpr const char* contradiction = "the catalogue of the database is wrong";

[[noreturn]] void wrong(const std::string& object, const std::string& expected, const std::string& found) {
  throw Error(ErrorKind::wrongFormat, contradiction, object + ": expected " + expected + ", found " + found);
}

std::string shown(const Statement& row, int column) {
  switch (row.type(column)) {
  case SQLITE_NULL:
    return "null";
  case SQLITE_TEXT:
    return "the text \"" + row.text(column) + "\"";
  case SQLITE_BLOB:
    return "a blob";
  default:
    return row.text(column);
  }
}

std::int64_t requireInteger(const Statement& row, int column, const std::string& object,
                            const std::string& what, std::int64_t least, std::int64_t greatest) {
  if (row.type(column) != SQLITE_INTEGER || row.integer(column) < least || row.integer(column) > greatest) {
    wrong(object,
          what + (greatest == std::numeric_limits<std::int64_t>::max()
                      ? " of at least " + std::to_string(least)
                      : " of " + std::to_string(least) + " to " + std::to_string(greatest)),
          shown(row, column));
  }
  return row.integer(column);
}

double requireFinite(const Statement& row, int column, const std::string& object, const std::string& what) {
  const bool number = row.type(column) == SQLITE_FLOAT || row.type(column) == SQLITE_INTEGER;
  if (!number || !std::isfinite(row.real(column))) {
    wrong(object, "a finite " + what, shown(row, column));
  }
  return row.real(column);
}

std::string requireText(const Statement& row, int column, const std::string& object, const std::string& what,
                        bool mayBeNull) {
  if (row.type(column) != SQLITE_TEXT && !(mayBeNull && row.type(column) == SQLITE_NULL)) {
    wrong(object, "a text as " + what, shown(row, column));
  }
  return row.text(column);
}

// Damaged rows may share the pages that hold a text, so that all together claim more than the file has.
std::uint64_t textBytesOf(const pointcloud::PointAttribute& attribute) {
  return attribute.name.size() + attribute.unit.size() + attribute.title.size() +
         attribute.description.size();
}

// Those that this thread may run on; the machine's where the system doesn't tell.
unsigned int usableProcessors() {
#ifdef CPU_COUNT
  cpu_set_t usable;
  if (sched_getaffinity(0, sizeof usable, &usable) == 0) {
    return static_cast<unsigned int>(CPU_COUNT(&usable));
  }
#endif
  return std::thread::hardware_concurrency();
}

std::size_t threadsFor(unsigned int threadCount) {
  constexpr unsigned int most = 64;
  return threadCount != 0 ? std::min(threadCount, most) : std::clamp(usableProcessors(), 1U, 2U);
}

} // namespace

Database& requireOpen(const std::shared_ptr<Database>& database) {
  if (!database) {
    throw Error(ErrorKind::wrongUse, "no database is open", "expected a call of open before, found none");
  }
  return *database;
}

Database::Database(const std::string& path, unsigned int threadCount) : mostReaders(threadsFor(threadCount)) {
  readers.push_back(std::make_unique<BlockReader>(path));
  readLayout();
  readAttributes();
  checkExtent();
  for (Column& column : catalogue) {
    readBlockIndex(column);
  }
  checkOutermostBlocks();
}

void Database::readLayout() {
  const std::string object = "table \"database\" of " + path();
  Statement row(readers.front()->connection(), "SELECT records, block_rows FROM database LIMIT 2", object);
  if (!row.step()) {
    wrong(object, "one row", "none");
  }
  constexpr auto greatest = std::numeric_limits<std::int64_t>::max();
  const auto records = requireInteger(row, 0, object, "a count of records", 0, greatest);
  const auto blockRows =
      requireInteger(row, 1, object, "records a block", 1, std::numeric_limits<std::uint32_t>::max());
  division = {static_cast<std::uint64_t>(records), static_cast<std::uint64_t>(blockRows)};
  if (row.step()) {
    wrong(object, "one row", "more");
  }
}

void Database::readAttributes() {
  const std::string object = "table \"attribute\" of " + path();
  Statement row(readers.front()->connection(),
                "SELECT id, name, type, length, scale, \"offset\", unit, title, description FROM attribute "
                "NOT INDEXED", // in the order of the table: sorting would hold every text in memory
                object);
  const std::uint64_t mostTextBytes = readers.front()->connection().identity().bytes;
  std::uint64_t textBytes = 0;
  while (row.step()) {
    if (row.type(0) != SQLITE_INTEGER || (!catalogue.empty() && row.integer(0) <= catalogue.back().id)) {
      wrong(object, "ids that rise from row to row", shown(row, 0));
    }
    Column column = columnFrom(row);
    if (textBytes += textBytesOf(column.attribute); textBytes > mostTextBytes) {
      wrong(object, "at most as much text as the file has bytes, " + std::to_string(mostTextBytes), "more");
    }
    if (!indexByName.emplace(column.attribute.name, catalogue.size()).second) {
      wrong(object, "every name once", "\"" + column.attribute.name + "\" twice");
    }
    catalogue.push_back(std::move(column));
  }
}

Column Database::columnFrom(const Statement& row) const {
  Column column;
  column.id = row.integer(0);
  pointcloud::PointAttribute& attribute = column.attribute;
  attribute.name =
      requireText(row, 1, "attribute " + std::to_string(column.id) + " of " + path(), "name", false);
  const std::string object = "column \"" + attribute.name + "\" of " + path();
  const std::string typeName = requireText(row, 2, object, "type", false);
  const auto type = storedTypeNamed(typeName);
  if (!type) {
    wrong(object, "a type of int8 to uint64, float32 or float64", "\"" + typeName + "\"");
  }
  column.type = *type;
  attribute.storedType = dataTypeOf(*type);
  attribute.length = static_cast<unsigned>(requireInteger(row, 3, object, "a length", 1, maximumLength));
  attribute.scale = requireFinite(row, 4, object, "scale");
  if (attribute.scale == 0) {
    wrong(object, "a scale other than 0", "0");
  }
  attribute.offset = requireFinite(row, 5, object, "offset");
  attribute.resolution = attribute.scale;
  attribute.unit = requireText(row, 6, object, "unit", true);
  attribute.title = requireText(row, 7, object, "title", true);
  attribute.description = requireText(row, 8, object, "description", true);
  return column;
}

void Database::checkExtent() const {
  const std::string object = "table \"database\" of " + path();
  const std::string records = std::to_string(division.records) + " records";
  if (catalogue.empty() && division.records != 0) {
    wrong(object, "no records without attributes", records);
  }
  const std::uint64_t fileBytes = readers.front()->connection().identity().bytes;
  std::uint64_t recordBytes = 0;
  for (const Column& column : catalogue) {
    recordBytes += column.recordBytes();
  }
  if (recordBytes != 0 && division.records > fileBytes / recordBytes) {
    wrong(object,
          "at most " + std::to_string(fileBytes / recordBytes) + " records of " +
              std::to_string(recordBytes) + " bytes in a file of " + std::to_string(fileBytes) + " bytes",
          records);
  }
}

void Database::readBlockIndex(Column& column) {
  const std::string object = "column \"" + column.attribute.name + "\" of " + path();
  const std::uint64_t expected = division.blockCount();
  Statement row(
      readers.front()->connection(),
      "SELECT number, rowid FROM block WHERE attribute = ?1 AND typeof(number) = 'integer' ORDER BY number",
      object);
  row.bind(1, column.id);
  while (row.step()) {
    const std::uint64_t number = column.blockRowIds.size();
    if (number == expected) {
      wrong(object, std::to_string(expected) + " blocks", "block " + row.text(0) + " besides");
    }
    if (row.type(0) != SQLITE_INTEGER || row.integer(0) != static_cast<std::int64_t>(number)) {
      wrong(object, "block " + std::to_string(number) + " of " + std::to_string(expected),
            "block " + row.text(0));
    }
    column.blockRowIds.push_back(row.integer(1));
  }
  if (column.blockRowIds.size() < expected) {
    wrong(object, std::to_string(expected) + " blocks", std::to_string(column.blockRowIds.size()));
  }
}

// Block sizes betray a wrong count of records; the first and the last block of a column tell, for two pages.
void Database::checkOutermostBlocks() {
  if (division.records == 0) {
    return;
  }
  for (const Column& column : catalogue) {
    readers.front()->open(column, division, 0);
    if (division.blockCount() > 1) {
      readers.front()->open(column, division, division.blockCount() - 1);
    }
  }
}

std::optional<std::size_t> Database::columnNamed(const std::string& name) const {
  const auto found = indexByName.find(name);
  return found == indexByName.end() ? std::nullopt : std::optional(found->second);
}

const Column& Database::requireColumn(const std::string& name) const {
  const auto index = columnNamed(name);
  if (!index) {
    throw Error(ErrorKind::wrongUse, "the database has no such attribute",
                "column \"" + name + "\" of " + path() + ": expected one of its " +
                    std::to_string(catalogue.size()) + " attributes, found none of that name");
  }
  return catalogue[*index];
}

bool Database::addReader() {
  try {
    auto reader = std::make_unique<BlockReader>(path());
    const bool same = reader->connection().identity() == readers.front()->connection().identity() &&
                      requireRegularFile(path()) == reader->connection().identity();
    if (same) {
      readers.push_back(std::move(reader));
    }
    return same;
  } catch (const Error&) {
    return false; // the file was renamed or removed; the readers that are open go on
  }
}

const std::vector<std::unique_ptr<BlockReader>>& Database::readersFor(std::size_t wanted) {
  while (readers.size() < std::min(wanted, mostReaders)) {
    if (!addReader()) {
      mostReaders = readers.size();
    }
  }
  return readers;
}

} // namespace riegl::rdb::embedded
