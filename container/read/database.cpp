// SPDX-License-Identifier: BSD-3-Clause
// The public face of an open database file.
#include "container/read/database.h"

#include "container/read/metadata.h"
#include "container/read/open_file.h"

#include <algorithm>

namespace container {
namespace {

void join(ComponentExtent& all, const ComponentExtent& more) {
  all.missing += more.missing;
  if (more.minimum) { // and then a maximum
    all.minimum = std::min(all.minimum.value_or(*more.minimum), *more.minimum);
    all.maximum = std::max(all.maximum.value_or(*more.maximum), *more.maximum);
  }
}

} // namespace

Database::Database(const std::string& path, unsigned int threadCount)
    : file(std::make_shared<OpenFile>(path, threadCount)) {}

const std::string& Database::path() const {
  return file->connection().path();
}

std::uint64_t Database::recordCount() const {
  return file->catalogue.layout().records;
}

std::uint64_t Database::blockRows() const {
  return file->catalogue.layout().blockRows;
}

std::size_t Database::attributeCount() const {
  return file->catalogue.columns().size();
}

const Attribute& Database::attribute(std::size_t index) const {
  return file->catalogue.columns()[index].attribute;
}

const Attribute* Database::find(const std::string& name) const {
  const Column* const column = file->catalogue.find(name);
  return column == nullptr ? nullptr : &column->attribute;
}

const Attribute& Database::require(const std::string& name) const {
  return file->requireColumn(name).attribute;
}

int Database::version() const {
  return file->connection().version();
}

StoredColumn Database::storage(const std::string& name) const {
  const Column& column = file->requireColumn(name);
  StoredColumn stored;
  stored.blocks = file->catalogue.layout().blockCount();
  if (column.index.empty()) {
    stored.bytes = recordCount() * column.attribute.recordBytes();
  }
  for (const IndexedBlock& block : column.index) {
    stored.encodedBlocks += block.isEncoded ? 1 : 0;
    stored.bytes += block.bytes;
  }
  return stored;
}

std::string Database::encoding(const std::string& name, std::uint64_t block) const {
  const Column& column = file->requireColumn(name);
  const BlockLayout& layout = file->catalogue.layout();
  if (block >= layout.blockCount()) {
    throw Error(ErrorKind::wrongUse, "the database has no such block",
                "column \"" + name + "\" of " + path() + ": expected a block below " +
                    std::to_string(layout.blockCount()) + ", found " + std::to_string(block));
  }
  if (!column.isEncoded(block)) {
    return "raw";
  }
  BlockReader& reader = file->readers.first();
  reader.encoded.open(reader, column, layout, block);
  const codec::PieceHeader& header = reader.encoded.header();
  std::string text = header.codec == codec::Codec::zlib  ? "deflate"
                     : header.codec == codec::Codec::lz4 ? "lz4"
                                                         : "uncompressed pieces";
  text += header.filter == codec::Filter::shuffle           ? ", shuffle"
          : header.filter == codec::Filter::deltaAndShuffle ? ", delta and shuffle"
                                                            : "";
  return text + (header.isScaled() ? ", scaled" : "");
}

std::vector<SourceScaling> Database::scaling(const std::string& name) const {
  const Column& column = file->requireColumn(name);
  BlockReader& reader = file->readers.first();
  std::vector<SourceScaling> components;
  for (std::uint64_t block = 0; block < column.index.size() && components.empty(); ++block) {
    if (column.isEncoded(block)) {
      reader.encoded.open(reader, column, file->catalogue.layout(), block);
      for (const codec::Scaling& component : reader.encoded.header().scaling) {
        components.push_back({component.scale, component.offset});
      }
    }
  }
  return components;
}

std::vector<std::vector<ComponentExtent>> Database::blockExtents(const std::string& name) const {
  return file->extentsOf(file->requireColumn(name));
}

std::vector<ComponentExtent> Database::extents(const std::string& name) const {
  std::vector<ComponentExtent> all;
  for (const BlockExtent& block : file->extentsOf(file->requireColumn(name))) {
    if (block.empty()) {
      return {};
    }
    all.resize(block.size());
    for (std::size_t c = 0; c < block.size(); ++c) {
      join(all[c], block[c]);
    }
  }
  return all;
}

std::optional<std::string> Database::item(const std::string& name) const {
  return metadataItem(file->connection(), name);
}

std::vector<std::string> Database::itemNames() const {
  return metadataNames(file->connection());
}

} // namespace container
