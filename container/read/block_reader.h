// SPDX-License-Identifier: BSD-3-Clause
// Reads blocks of one file through one connection. Internal to this room.
#pragma once

#include "container/format/block_layout.h"
#include "container/read/connection.h"
#include "container/read/overflow_pages.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace riegl::rdb::embedded {

/// Bytes taken from a block at a time: they stay in the processor's cache from reading to checksum to conversion.
inline constexpr std::size_t chunkBytes = std::size_t{256} * 1024;

/// A connection with the one open block of it. Not for two threads at a time; a reader a thread.
class BlockReader {
 public:
  explicit BlockReader(const std::string& path);
  BlockReader(const BlockReader&) = delete;
  BlockReader& operator=(const BlockReader&) = delete;
  ~BlockReader();

  Connection& connection() { return link; }

  /// Goes to a block and checks that it is the block of that column and number, of the expected size.
  /// \param number  below the layout's count of blocks
  /// \errors Error that names column, block, expectation and finding
  void open(const Column& column, const BlockLayout& layout, std::uint64_t number);
  /// The checksum that the open block carries.
  const std::optional<std::uint32_t>& checksum() const { return expectedChecksum; }
  /// From here to the next `open` or `readThroughSqlite`, reads of the open block go past SQLite's page cache
  /// as far as they can; it is to be read from its first byte on, in order. What they give counts only if the
  /// block's checksum says so. \return false if nothing changes: no checksum, or a block that can't be read so
  bool readPastSqlite();
  void readThroughSqlite() { isPastSqlite = false; }
  /// Reads `bytes` bytes of the open block from `offset` on; they must lie in it. \errors Error if SQLite can't
  void read(void* to, std::size_t bytes, std::size_t offset);
  /// Raises the Error for a checksum other than the block's.
  void requireChecksum(std::uint32_t found) const;

  /// Room for values on their way, kept from block to block.
  std::vector<unsigned char> stored, converted;

 private:
  void openBlob(std::int64_t rowId);
  [[noreturn]] void damaged(const std::string& expected, const std::string& found) const;

  Connection link;
  Statement head;
  OverflowPages pages;
  bool isPastSqlite = false;
  sqlite3_blob* blob = nullptr;
  std::optional<std::uint32_t> expectedChecksum;
  std::int64_t openRowId = 0;
  std::uint64_t openBytes = 0;
  std::string object;
};

} // namespace riegl::rdb::embedded
