// SPDX-License-Identifier: BSD-3-Clause
// Reads blocks of one file through one connection. Internal to the container.
#pragma once

#include "container/format/block_layout.h"
#include "container/read/column.h"
#include "container/read/connection.h"
#include "container/read/encoded_block.h"
#include "container/read/overflow_pages.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace container {

/// Bytes read from a block at a time: few enough to stay in the processor's cache from the read through checksum and
/// conversion.
inline constexpr std::size_t chunkBytes = std::size_t{256} * 1024;

/// A connection and the one block that is open on it. Not thread-safe: one reader per thread.
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
  /// Whether the open block is that one.
  bool isAt(const Column& column, std::uint64_t number) const {
    return openColumn == &column && openNumber == number && blob != nullptr;
  }
  /// The checksum that the open block carries.
  const std::optional<std::uint32_t>& checksum() const { return expectedChecksum; }
  /// Until the next `open` or `readThroughSqlite`, reads of the open block bypass SQLite's page cache where they can;
  /// the block has to be read from its first byte on, in order, and its bytes are valid only if its checksum confirms
  /// them. \return false, and no change, for a block without a checksum or one that cannot be read this way
  bool readPastSqlite();
  void readThroughSqlite() { isPastSqlite = false; }
  /// Reads `bytes` bytes of the open block from `offset` on past SQLite. They may be others than the block's, as the
  /// place of bytes that do not follow the last ones read is a guess: a checksum of their own has to confirm them.
  /// \return false if that is not possible; reads then go through SQLite
  bool readStraight(void* to, std::size_t bytes, std::size_t offset);
  /// Reads `bytes` bytes of the open block from `offset` on; they must lie in it. \errors Error if SQLite fails
  void read(void* to, std::size_t bytes, std::size_t offset);
  /// Raises the Error for a damaged block unless `found` is its checksum, or it has none.
  void requireChecksum(std::uint32_t found) const;

  /// The bytes of the open block as it is stored.
  std::uint64_t bytes() const { return openBytes; }
  /// Raises the Error for a damaged block: `finding` tells what was expected and what was found.
  [[noreturn]] void refuse(const std::string& finding) const;

  /// What is kept of an encoded block from one read of it to the next.
  EncodedBlock encoded;
  /// Buffers for values between file and caller, reused from block to block.
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
  const Column* openColumn = nullptr;
  std::uint64_t openNumber = 0;
  std::int64_t openRowId = 0;
  std::uint64_t openBytes = 0;
  std::string object;
};

} // namespace container
