// SPDX-License-Identifier: BSD-3-Clause
// Makes a database file: gathers the records of each column to blocks and inserts them.
#include "container/write/writer.h"

#include "container/format/error.h"
#include "container/format/file_format.h"
#include "container/write/catalogue_rows.h"
#include "container/write/output_file.h"
#include "container/write/prepared_block.h"
#include "container/write/worker_threads.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <future>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <utility>

namespace container {
namespace {

// Blocks that wait for their encoding. Two per thread: a thread need not wait while another one's block takes longer.
constexpr std::size_t pendingPerThread = 2;
constexpr std::uint64_t mostPendingBytes = 256 << 20;
constexpr std::uint64_t mostBlockBytes = 900'000'000; // SQLite takes values of up to 1,000,000,000 bytes

[[noreturn]] void refuse(const std::string& object, const std::string& expected, const std::string& found) {
  throw Error(ErrorKind::wrongUse, "the database cannot be written so",
              object + ": expected " + expected + ", found " + found);
}

/// One attribute, its blocks, and those of its records that do not fill a block yet.
struct OpenColumn {
  WrittenColumn written;
  std::vector<codec::Scaling> source{};
  std::vector<unsigned char> gathered{};

  const Attribute& attribute() const { return written.attribute; }
};

/// A block that is being encoded by another thread.
struct PendingBlock {
  std::size_t column = 0;
  std::uint64_t number = 0;
  std::vector<unsigned char> records;
  std::future<PreparedBlock> prepared;
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

std::uint64_t textBytesOf(const Attribute& attribute) {
  return attribute.name.size() + attribute.unit.size() + attribute.title.size() +
         attribute.description.size();
}

// Readers of version 2 refuse more.
void requireTextBytes(const WriterSettings& settings, const std::string& object, const char* texts,
                      std::uint64_t bytes) {
  if (settings.version != firstVersion && bytes > mostMetadataBytes) {
    refuse(object, "at most " + std::to_string(mostMetadataBytes) + " bytes of " + texts,
           std::to_string(bytes));
  }
}

const WriterSettings& checked(const std::string& path, const WriterSettings& settings) {
  if (settings.blockRows == 0) {
    refuse(path, "at least one record per block", "0");
  }
  if (settings.version < firstVersion || settings.version > newestVersion) {
    refuse(path, "version 1 or 2", std::to_string(settings.version));
  }
  if (settings.version != firstVersion && !settings.checksums) {
    refuse(path, "checksums, which version 2 requires", "none");
  }
  if (settings.version == firstVersion && settings.encoding != BlockEncoding::raw) {
    refuse(path, "raw blocks, as version 1 has no others", "encoded ones");
  }
  return settings;
}

} // namespace

struct Writer::State {
  State(const std::string& path, WriterSettings wanted);
  void requireUsable() const;
  void insert(std::size_t index, std::uint64_t number, std::span<const unsigned char> records,
              PreparedBlock block);
  void insertOldest();
  void takeBlock(std::size_t index, std::span<const unsigned char> records);
  void writePart(std::uint64_t part, std::vector<const unsigned char*>& from);
  void finish();
  void insertCatalogueOfVersion1(const DatabaseRow& layout);

  WriterSettings settings;
  OutputFile file;
  std::deque<OpenColumn> columns{}; // keep their addresses
  std::set<std::string> names{};
  std::map<std::string, std::string> items{};
  std::uint64_t itemBytes = 0;
  std::uint64_t attributeTextBytes = 0;
  std::uint64_t rowCount = 0;
  bool usable = true;
  std::deque<PendingBlock> pending{};
  std::uint64_t pendingBytes = 0;
  WorkerThreads workers; // ends before what its tasks refer to
};

Writer::State::State(const std::string& path, WriterSettings wanted)
    : settings(checked(path, wanted)), file(path, settings.version), workers(settings.threadCount) {}

void Writer::State::requireUsable() const {
  if (!usable) {
    refuse(file.path(), "a writer in use", "one that has finished or failed");
  }
}

void Writer::State::insert(std::size_t index, std::uint64_t number, std::span<const unsigned char> records,
                           PreparedBlock block) {
  const auto checksum = settings.checksums ? std::optional(block.checksum) : std::nullopt;
  const void* const data = block.encoded ? static_cast<const void*>(block.encoded->data()) : records.data();
  const std::size_t bytes = block.encoded ? block.encoded->size() : records.size();
  file.insertBlock(static_cast<std::int64_t>(index) + 1, number, data, bytes, checksum);
  if (settings.version != firstVersion) {
    columns[index].written.blocks.push_back(
        {block.encoded.has_value(), block.checksum, bytes, std::move(block.extents)});
  }
}

void Writer::State::insertOldest() {
  PendingBlock block = std::move(pending.front());
  pendingBytes -= block.records.size();
  pending.pop_front();
  insert(block.column, block.number, block.records, block.prepared.get());
}

// Takes the block that the record at rowCount is in. Blocks to be encoded go through a queue and are inserted in its
// order, so that the file does not depend on which thread is done first.
void Writer::State::takeBlock(std::size_t index, std::span<const unsigned char> records) {
  const OpenColumn& column = columns[index];
  const std::uint64_t number = rowCount / settings.blockRows;
  const BlockEncoding encoding = settings.encoding;
  if (encoding == BlockEncoding::raw) {
    insert(index, number, records, prepareBlock(records, column.attribute(), encoding, column.source));
    return;
  }
  while (!pending.empty() && (pending.size() >= pendingPerThread * workers.count() ||
                              pendingBytes + records.size() > mostPendingBytes)) {
    insertOldest();
  }
  PendingBlock& block = pending.emplace_back();
  block.column = index;
  block.number = number;
  block.records.assign(records.begin(), records.end());
  pendingBytes += records.size();
  const std::span<const unsigned char> kept = block.records;
  block.prepared = workers.run<PreparedBlock>(
      [&column, kept, encoding] { return prepareBlock(kept, column.attribute(), encoding, column.source); });
}

// Takes records that end no later than the block they begin in; whole blocks are inserted without a copy.
void Writer::State::writePart(std::uint64_t part, std::vector<const unsigned char*>& from) {
  const std::uint64_t filled = rowCount % settings.blockRows;
  const bool completes = filled + part == settings.blockRows;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    OpenColumn& column = columns[i];
    const auto bytes = static_cast<std::size_t>(part * column.attribute().recordBytes());
    if (filled == 0 && completes) {
      takeBlock(i, {from[i], bytes});
    } else {
      column.gathered.insert(column.gathered.end(), from[i], from[i] + bytes);
      if (completes) {
        takeBlock(i, column.gathered);
        column.gathered.clear();
      }
    }
    from[i] += bytes;
  }
  rowCount += part;
}

void Writer::State::finish() {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (!columns[i].gathered.empty()) {
      takeBlock(i, columns[i].gathered);
    }
  }
  while (!pending.empty()) {
    insertOldest();
  }
  const DatabaseRow layout{static_cast<std::int64_t>(rowCount), settings.blockRows};
  if (settings.version != firstVersion) {
    std::vector<const WrittenColumn*> written;
    for (const OpenColumn& column : columns) {
      written.push_back(&column.written);
    }
    insertCatalogue(file, layout, written, items);
  } else {
    insertCatalogueOfVersion1(layout);
  }
  file.finish();
}

void Writer::State::insertCatalogueOfVersion1(const DatabaseRow& layout) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    file.insertAttribute(static_cast<std::int64_t>(i) + 1, columns[i].attribute());
  }
  file.insertLayout(layout);
  for (const auto& [name, value] : items) {
    file.insertItem(name, value);
  }
}

Writer::Writer(const std::string& path, WriterSettings settings)
    : state(std::make_unique<State>(path, settings)) {}

Writer::~Writer() = default;

std::size_t Writer::addAttribute(const Attribute& attribute, const std::vector<SourceScaling>& source) {
  state->requireUsable();
  if (state->rowCount != 0) {
    refuse("column \"" + attribute.name + "\"", "all attributes before the first record",
           std::to_string(state->rowCount) + " records written");
  }
  checkAttribute(attribute, state->settings.blockRows);
  const std::uint64_t textBytes = state->attributeTextBytes + textBytesOf(attribute);
  requireTextBytes(state->settings, "column \"" + attribute.name + "\"", "texts of all attributes",
                   textBytes);
  if (!source.empty() && source.size() != attribute.length) {
    refuse("column \"" + attribute.name + "\"",
           "the scale of " + std::to_string(attribute.length) + " components, or of none",
           std::to_string(source.size()));
  }
  if (!state->names.insert(attribute.name).second) {
    refuse("column \"" + attribute.name + "\"", "a name of its own", "an attribute of that name");
  }
  state->attributeTextBytes = textBytes;
  OpenColumn& column = state->columns.emplace_back();
  column.written.attribute = attribute;
  for (const SourceScaling& component : source) {
    column.source.push_back({component.scale, component.offset});
  }
  return state->columns.size() - 1;
}

void Writer::setMetadata(const std::string& name, const std::string& value) {
  state->requireUsable();
  std::uint64_t bytes = state->itemBytes + name.size() + value.size();
  if (const auto old = state->items.find(name); old != state->items.end()) {
    bytes -= name.size() + old->second.size();
  }
  requireTextBytes(state->settings, "item \"" + name + "\"", "names and values of all items", bytes);
  state->items[name] = value;
  state->itemBytes = bytes;
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
      refuse("column \"" + state->columns[i].attribute().name + "\"", "records", "a null pointer");
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
