// SPDX-License-Identifier: BSD-3-Clause
// Reads the blob of a row from the pages of the database file, without SQLite's page cache. Internal to this room.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <sqlite3.h>
#include <vector>

namespace riegl::rdb::embedded {

/// The way through a table's tree to one row, and along the chain of pages that hold the row's last column.
///
/// Says no rather than guess: whatever is not as expected ends in `false`, and the row is then SQLite's to read
/// and to judge. `true` is no proof either, as a damaged file may lead to other bytes: the caller holds them
/// against a checksum. Not for two threads at a time, like the connection it belongs to.
class OverflowPages {
 public:
  /// \param connection   outlives this; opened read-only
  /// \param tableRoot    page of the file where the table's tree begins, from the schema
  OverflowPages(sqlite3* connection, std::int64_t tableRoot);

  /// Goes to the first byte of the blob in the last of four columns of a row.
  /// \param bytes  that the blob must have
  /// \return false if the row does not look so, lies in its tree page alone, or no read transaction is open
  bool find(std::int64_t rowId, std::uint64_t bytes);
  /// Reads the next bytes of the blob; writes nothing outside [to, to + bytes).
  /// \return false if they cannot be had; `to` holds anything then, and `find` comes next
  bool read(unsigned char* to, std::size_t bytes);

 private:
  /// A tree page: its number and how many cells it says it has.
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
  std::uint64_t usableBytes = 0; ///< of a page; 0 if the file is not to be read so
  std::uint64_t pageCount = 0;   ///< that lie in the file whole

  // A copy of the inner page that was searched last: nobody changes the file while the transaction is open.
  std::uint64_t innerNumber = 0;
  std::vector<unsigned char> innerPage;

  // The leaf found last and the keys (after, upTo] that belong there; rows are mostly asked for in order.
  std::uint64_t leafNumber = 0;
  std::int64_t after = std::numeric_limits<std::int64_t>::max();
  std::int64_t upTo = std::numeric_limits<std::int64_t>::min();

  // Where the next byte is: first in the leaf, then in the chain.
  std::uint64_t bytesLeft = 0;
  std::uint64_t localPage = 0, localOffset = 0, localLeft = 0;
  std::uint64_t chainPage = 0, chainOffset = 0, nextPage = 0;
};

} // namespace riegl::rdb::embedded
