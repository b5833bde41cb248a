// SPDX-License-Identifier: BSD-3-Clause
// Checks every block of a database file.
#include "container/read/verify.h"

#include "container/format/checksum.h"
#include "container/read/metadata.h"
#include "container/read/open_file.h"

#include <algorithm>

namespace container {
namespace {

void verifyPieces(BlockReader& reader, const Column& column, const BlockLayout& layout,
                  std::uint64_t number) {
  reader.encoded.open(reader, column, layout, number);
  for (std::uint32_t piece = 0; piece < reader.encoded.header().pieces.size(); ++piece) {
    reader.encoded.recordsOf(reader, piece);
  }
}

void verifyBlock(OpenFile& file, const Column& column, std::uint64_t number, Verification& seen) {
  const BlockLayout& layout = file.catalogue.layout();
  BlockReader& reader = file.readers.first();
  if (column.isEncoded(number)) {
    verifyPieces(reader, column, layout, number);
    seen.bytes += column.index[number].bytes;
    return;
  }
  reader.open(column, layout, number);
  reader.stored.resize(chunkBytes);
  const auto bytes = static_cast<std::size_t>(layout.rows(number) * column.attribute.recordBytes());
  std::uint32_t checksum = 0;
  for (std::size_t offset = 0; offset < bytes; offset += chunkBytes) {
    const std::size_t part = std::min(chunkBytes, bytes - offset);
    reader.read(reader.stored.data(), part, offset);
    checksum = crc32(checksum, reader.stored.data(), part);
  }
  reader.requireChecksum(checksum);
  seen.bytes += bytes;
  seen.withoutChecksum += reader.checksum() ? 0 : 1;
}

} // namespace

Verification verify(const std::string& path,
                    const std::function<void(const std::string& what, const std::string& details)>& report) {
  OpenFile file(path, 1);
  Verification seen;
  seen.isCatalogueProtected = file.connection().version() != firstVersion;
  const auto guarded = [&](auto&& check) {
    try {
      check();
    } catch (const Error& error) {
      ++seen.findings;
      report(error.what(), error.details());
    }
  };
  for (const Column& column : file.catalogue.columns()) {
    for (std::uint64_t number = 0; number < file.catalogue.layout().blockCount(); ++number) {
      ++seen.blocks;
      guarded([&] { verifyBlock(file, column, number, seen); });
    }
  }
  guarded([&] {
    for (const std::string& name : metadataNames(file.connection())) {
      guarded([&] { metadataItem(file.connection(), name); });
    }
  });
  guarded([&] { readExtents(file.connection(), file.catalogue.layout(), file.catalogue.columns()); });
  return seen;
}

} // namespace container
