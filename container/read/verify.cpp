// SPDX-License-Identifier: BSD-3-Clause
// Checks every block of a database file.
#include "container/read/verify.h"

#include "container/format/checksum.h"
#include "container/read/database.h"

#include <algorithm>

namespace riegl::rdb::embedded {
namespace {

void verifyBlock(Database& database, const Column& column, std::uint64_t number, Verification& seen) {
  BlockReader& reader = *database.readersFor(1).front();
  reader.open(column, database.layout(), number);
  reader.stored.resize(chunkBytes);
  const auto bytes = static_cast<std::size_t>(database.layout().rows(number) * column.recordBytes());
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
  Database database(path, 1);
  Verification seen;
  const auto guarded = [&](auto&& check) {
    try {
      check();
    } catch (const Error& error) {
      ++seen.findings;
      report(error.what(), error.details());
    }
  };
  for (const Column& column : database.columns()) {
    for (std::uint64_t number = 0; number < database.layout().blockCount(); ++number) {
      ++seen.blocks;
      guarded([&] { verifyBlock(database, column, number, seen); });
    }
  }
  guarded([&] {
    for (const std::string& name : database.itemNames()) {
      guarded([&] { database.item(name); });
    }
  });
  return seen;
}

} // namespace riegl::rdb::embedded
