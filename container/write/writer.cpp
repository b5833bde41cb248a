// SPDX-License-Identifier: BSD-3-Clause
// Makes a database file: gathers the records of each column to blocks and inserts them.
#include "container/write/writer.h"

#include "container/format/checksum.h"
#include "container/format/error.h"
#include "container/write/output_file.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace container {
namespace {

constexpr std::uint64_t mostBlockBytes = 900'000'000; // SQLite takes values of up to 1,000,000,000 bytes

[[noreturn]] void refuse(const std::string& object, const std::string& expected, const std::string& found) {
  throw Error(ErrorKind::wrongUse, "the database cannot be written so",
              object + ": expected " + expected + ", found " + found);
}

/// One attribute and those of its records that do not fill a block yet.
struct OpenColumn {
  Attribute attribute;
  std::vector<unsigned char> gathered{};
};

void checkAttribute(const Attribute& attribute, std::uint32_t blockRows) {
  const std::string object = "column \"" + attribute.name + "\"";
  if (attribute.name.empty()) {
    refuse(object, "a name", "none");
  }
  if (attribute.length < 1 || attribute.length > maximumLength) {
    refuse(object, "a length of 1 to " + std::to_string(maximumLength), std::to_string(attribute.length));
  }
  if (!std::isfinite(attribute.scale) || attribute.scale == 0) {
    refuse(object, "a finite scale other than 0", std::to_string(attribute.scale));
  }
  if (!std::isfinite(attribute.offset)) {
    refuse(object, "a finite offset", std::to_string(attribute.offset));
  }
  const std::uint64_t blockBytes = std::uint64_t{attribute.recordBytes()} * blockRows;
  if (blockBytes > mostBlockBytes) {
    refuse(object, "blocks of at most " + std::to_string(mostBlockBytes) + " bytes",
           std::to_string(blockBytes));
  }
}

} // namespace

struct Writer::State {
  State(const std::string& path, WriterSettings wanted);
  void requireUsable() const;
  void insertBlock(std::size_t index, const unsigned char* data, std::size_t bytes);
  void writePart(std::uint64_t part, std::vector<const unsigned char*>& from);
  void finish();

  OutputFile file;
  WriterSettings settings;
  std::vector<OpenColumn> columns{};
  std::set<std::string> names{};
  std::map<std::string, std::string> items{};
  std::uint64_t rowCount = 0;
  bool usable = true;
};

Writer::State::State(const std::string& path, WriterSettings wanted) : file(path), settings(wanted) {
  if (settings.blockRows == 0) {
    refuse(path, "at least one record per block", "0");
  }
}

void Writer::State::requireUsable() const {
  if (!usable) {
    refuse(file.path(), "a writer in use", "one that has finished or failed");
  }
}

// Inserts the block that the record at rowCount is in.
void Writer::State::insertBlock(std::size_t index, const unsigned char* data, std::size_t bytes) {
  const auto checksum = settings.checksums ? std::optional(crc32(0, data, bytes)) : std::nullopt;
  file.insertBlock(static_cast<std::int64_t>(index) + 1, rowCount / settings.blockRows, data, bytes,
                   checksum);
}

// Takes records that end no later than the block they begin in; whole blocks are inserted without a copy.
void Writer::State::writePart(std::uint64_t part, std::vector<const unsigned char*>& from) {
  const std::uint64_t filled = rowCount % settings.blockRows;
  const bool completes = filled + part == settings.blockRows;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    OpenColumn& column = columns[i];
    const auto bytes = static_cast<std::size_t>(part * column.attribute.recordBytes());
    if (filled == 0 && completes) {
      insertBlock(i, from[i], bytes);
    } else {
      column.gathered.insert(column.gathered.end(), from[i], from[i] + bytes);
      if (completes) {
        insertBlock(i, column.gathered.data(), column.gathered.size());
        column.gathered.clear();
      }
    }
    from[i] += bytes;
  }
  rowCount += part;
}

void Writer::State::finish() {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    file.insertAttribute(static_cast<std::int64_t>(i) + 1, columns[i].attribute);
  }
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (!columns[i].gathered.empty()) {
      insertBlock(i, columns[i].gathered.data(), columns[i].gathered.size());
    }
  }
  file.insertLayout(rowCount, settings.blockRows);
  for (const auto& [name, value] : items) {
    file.insertItem(name, value);
  }
  file.finish();
}

Writer::Writer(const std::string& path, WriterSettings settings)
    : state(std::make_unique<State>(path, settings)) {}

Writer::~Writer() = default;

std::size_t Writer::addAttribute(const Attribute& attribute) {
  state->requireUsable();
  if (state->rowCount != 0) {
    refuse("column \"" + attribute.name + "\"", "all attributes before the first record",
           std::to_string(state->rowCount) + " records written");
  }
  checkAttribute(attribute, state->settings.blockRows);
  if (!state->names.insert(attribute.name).second) {
    refuse("column \"" + attribute.name + "\"", "a name of its own", "an attribute of that name");
  }
  state->columns.push_back({attribute});
  return state->columns.size() - 1;
}

void Writer::setMetadata(const std::string& name, const std::string& value) {
  state->requireUsable();
  state->items[name] = value;
}

void Writer::write(std::uint64_t rows, const std::vector<const void*>& columns) {
  state->requireUsable();
  if (columns.size() != state->columns.size()) {
    refuse(state->file.path(), std::to_string(state->columns.size()) + " columns",
           std::to_string(columns.size()));
  }
  if (rows == 0) {
    return;
  }
  if (columns.empty()) {
    refuse(state->file.path(), "an attribute before the first record", "none");
  }
  std::vector<const unsigned char*> from;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i] == nullptr) {
      refuse("column \"" + state->columns[i].attribute.name + "\"", "records", "a null pointer");
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
  state->finish();
}

} // namespace container
