// SPDX-License-Identifier: BSD-3-Clause
// Reads the blob of a row from the pages of the database file, without SQLite's page cache. Internal to the
// container.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <sqlite3.h>
#include <vector>

namespace container {

/// Finds one row in a table's tree and follows the chain of pages that hold the row's last column.
///
/// Returns false for anything unexpected; the row is then left to SQLite to read and to check. True is no proof, as a
/// damaged file may lead to other bytes: the caller compares them with a checksum. Not thread-safe, like the connection
/// it belongs to.
class OverflowPages {
 public:
  /// \param connection   outlives this; opened read-only
  /// \param tableRoot    page of the file where the table's tree begins, from the schema
  OverflowPages(sqlite3* connection, std::int64_t tableRoot);

  /// Goes to the first byte of the blob in the last of four columns of a row.
  /// \param bytes  that the blob must have
  /// \return false if the row is not like that, lies in its tree page alone, or no read transaction is open
  bool find(std::int64_t rowId, std::uint64_t bytes);
  /// Goes to byte `offset` of the blob that was found. Unless that is where the last read ended, it is a guess: that the
  /// pages of the chain follow one another in the file, as a writer leaves them that writes one blob after the other.
  /// What is read from there on has to be confirmed by a checksum of its own.
  /// \return false if there is no such byte or page
  bool seek(std::uint64_t offset);
  /// Reads the next bytes of the blob; writes nothing outside [to, to + bytes).
  /// \return false if they cannot be read; the content of `to` is unspecified then, and `find` has to be called again
  bool read(unsigned char* to, std::size_t bytes);

 private:
  /// A tree page: its number, and the count of cells in its head.
  struct TreePage {
    std::uint64_t number = 0;
    std::uint64_t headBytes = 0; ///< before the cell pointers
    std::uint64_t cells = 0;
    std::uint64_t lastChild = 0; ///< of an inner page
    bool isLeaf() const { return headBytes == 8; }
  };
  /// The first bytes of a cell: enough for its head and the record's.
  struct Cell {
    std::uint64_t offset = 0; ///< inside the page
    std::array<unsigned char, 64> start{};
    std::size_t size = 0; ///< of `start` in use
    std::int64_t key = 0;
  };
  /// The first cell whose key is not below the one looked for, and the keys around the gap before it.
  struct Place {
    bool exists = false;
    Cell cell;
    bool hasBefore = false;
    std::int64_t before = 0;
  };

  void readFileHead();
  bool take(std::uint64_t page, std::uint64_t offset, void* to, std::size_t bytes);
  bool openTreePage(std::uint64_t number, TreePage& page);
  bool keepInner(std::uint64_t number);
  bool readCell(const TreePage& page, std::uint64_t index, Cell& cell);
  bool search(const TreePage& page, std::int64_t rowId, Place& place);
  bool descend(std::int64_t rowId, TreePage& leaf);
  bool enterCell(const TreePage& leaf, const Cell& cell, std::uint64_t bytes);
  bool readFromChain(unsigned char* to, std::size_t before, std::size_t bytes);

  sqlite3* connection;
  sqlite3_file* file = nullptr;
  std::uint64_t root = 0;
  std::uint64_t pageBytes = 0;
  std::uint64_t usableBytes = 0; ///< of a page; 0 if the file cannot be read this way
  std::uint64_t pageCount = 0;   ///< whole pages in the file

  // A copy of the inner page that was searched last; nobody can change the file while the transaction is open.
  std::uint64_t innerNumber = 0;
  std::vector<unsigned char> innerPage;

  // The leaf found last and the range of keys (after, upTo] that it covers; rows are mostly read in order.
  std::uint64_t leafNumber = 0;
  std::int64_t after = std::numeric_limits<std::int64_t>::max();
  std::int64_t upTo = std::numeric_limits<std::int64_t>::min();

  // Position of the next byte: first in the leaf, then in the chain.
  std::uint64_t blobBytes = 0, bytesLeft = 0;
  std::uint64_t startOffset = 0, startLeft = 0, startChain = 0; ///< of the blob's first byte
  std::uint64_t localPage = 0, localOffset = 0, localLeft = 0;
  std::uint64_t chainPage = 0, chainOffset = 0, nextPage = 0;
};

} // namespace container
