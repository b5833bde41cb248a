// SPDX-License-Identifier: BSD-3-Clause
// Reads the blob of a row from the pages of the database file, without SQLite's page cache.
//
// Why: sqlite3_blob_read copies every byte twice, from the file to a page of its cache and from there to the
// caller. A block is read once, so the cached copy is never used again. Here the bytes go from the file straight to the
// caller's buffer, while SQLite still finds the rows and reads their other columns.
//
// Depends on the file format that SQLite publishes and keeps (https://www.sqlite.org/fileformat2.html).
// - The file is pages of one size, counted from 1. The file's head gives the size (offset 16), the modes for
//   writing and reading (18, 19; 2 is the write-ahead log) and the bytes at each page's end that are nobody's
//   (20). The page that holds byte 2^30 is never used: it is the range for file locks.
// - A table is a tree ordered by row id. An inner page (5) holds cells of a child and the greatest key below it,
//   and one last child; a leaf (13) holds the rows. The offsets of the cells follow a page's head.
// - A leaf's cell is the payload's size, the row id, the payload's beginning, and the first page of the chain
//   that holds the rest. A chain page is the next one's number (four bytes, 0 for none) and payload.
// - The payload is a record: the size of its head, one type per column, then the columns' values.
// Reads use SQLite's own file handle (SQLITE_FCNTL_FILE_POINTER): closing a second descriptor would release the locks
// that this process holds on the file. As long as the connection's read transaction is open nobody can change the file,
// and a connection that never writes has no newer page in memory.
//
// Hostile files: every byte is read by `take`, which checks the bounds of page and file. No size from the file is
// allocated, the depth of the tree is bounded, a chain is followed only as far as the caller asks for bytes, and
// anything unexpected is left to sqlite3_blob_read.
#include "container/read/overflow_pages.h"

#include "container/format/sqlite_file.h"

#include <algorithm>
#include <cstring>
#include <optional>

namespace container {
namespace {

constexpr std::uint64_t lockByte = std::uint64_t{1} << 30;
constexpr std::size_t pointerBytes = 4;
constexpr int mostLevels = 20; // as many as SQLite follows
constexpr int columnsOfBlock = 4;

/// Reads SQLite's numbers of one to nine bytes from bounded memory.
class Numbers {
 public:
  Numbers(const unsigned char* from, std::size_t bytes) : begin(from), at(from), end(from + bytes) {}

  /// The next number, or nothing where the bytes end before it does.
  std::optional<std::uint64_t> next() {
    std::uint64_t number = 0;
    for (int i = 0; i < 9 && at != end; ++i) {
      const unsigned char byte = *at++;
      if (i == 8) {
        return (number << 8) | byte;
      }
      number = (number << 7) | (byte & 0x7fU);
      if (byte < 0x80) {
        return number;
      }
    }
    return std::nullopt;
  }
  std::size_t taken() const { return static_cast<std::size_t>(at - begin); }

 private:
  const unsigned char *begin, *at, *end;
};

// Bytes of the payload that stay in the leaf; the rest goes to a chain.
std::uint64_t localBytes(std::uint64_t payload, std::uint64_t usable) {
  const std::uint64_t most = usable - 35;
  const std::uint64_t least = (usable - 12) * 32 / 255 - 23;
  if (payload <= most) {
    return payload;
  }
  const std::uint64_t filling = least + (payload - least) % (usable - pointerBytes);
  return filling <= most ? filling : least;
}

// Bytes of the record before its last column, a blob of that size; nothing for any other record.
std::optional<std::uint64_t> bytesBeforeBlob(const unsigned char* record, std::size_t size,
                                             std::uint64_t blobBytes) {
  static constexpr std::array<std::uint64_t, 10> sizes{0, 1, 2, 3, 4, 6, 8, 8, 0, 0};
  Numbers numbers(record, size);
  const auto headBytes = numbers.next();
  std::uint64_t values = 0;
  for (int column = 1; column < columnsOfBlock; ++column) {
    const auto type = numbers.next();
    if (!type || *type >= sizes.size()) {
      return std::nullopt;
    }
    values += sizes[*type];
  }
  const auto blobType = numbers.next();
  if (!headBytes || !blobType || *blobType != 2 * blobBytes + 12 || numbers.taken() != *headBytes) {
    return std::nullopt;
  }
  return *headBytes + values;
}

} // namespace

OverflowPages::OverflowPages(sqlite3* owner, std::int64_t tableRoot)
    : connection(owner), root(tableRoot < 2 ? 0 : static_cast<std::uint64_t>(tableRoot)) {
  if (root == 0) {
    return;
  }
  const int status = sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER, &file);
  if (status != SQLITE_OK || file == nullptr || file->pMethods == nullptr) {
    file = nullptr;
    return;
  }
  readFileHead();
}

void OverflowPages::readFileHead() {
  std::array<unsigned char, 100> head{};
  sqlite3_int64 fileBytes = 0;
  if (file->pMethods->xRead(file, head.data(), static_cast<int>(head.size()), 0) != SQLITE_OK ||
      file->pMethods->xFileSize(file, &fileBytes) != SQLITE_OK || fileBytes < 0) {
    return;
  }
  pageBytes = pageBytesIn(head.data());
  const bool hasLog = head[18] != 1 || head[19] != 1;
  const bool isPowerOfTwo = (pageBytes & (pageBytes - 1)) == 0;
  if (hasLog || pageBytes < 512 || !isPowerOfTwo || pageBytes - head[20] < 480) {
    return;
  }
  usableBytes = pageBytes - head[20];
  pageCount = static_cast<std::uint64_t>(fileBytes) / pageBytes;
}

/// Reads from inside one page of the file, or from the copy of the inner page that was searched last. All reads of
/// pages go through it.
bool OverflowPages::take(std::uint64_t page, std::uint64_t offset, void* to, std::size_t bytes) {
  const std::uint64_t lockPage = lockByte / pageBytes + 1;
  if (page < 2 || page > pageCount || page == lockPage || offset > usableBytes ||
      bytes > usableBytes - offset) {
    return false;
  }
  if (page == innerNumber) {
    std::memcpy(to, innerPage.data() + offset, bytes);
    return true;
  }
  const std::uint64_t position = (page - 1) * pageBytes + offset;
  return file->pMethods->xRead(file, to, static_cast<int>(bytes), static_cast<sqlite3_int64>(position)) ==
         SQLITE_OK;
}

bool OverflowPages::openTreePage(std::uint64_t number, TreePage& page) {
  std::array<unsigned char, 12> head{};
  if (!take(number, 0, head.data(), head.size()) || (head[0] != 5 && head[0] != 13)) {
    return false;
  }
  page = {number, head[0] == 13 ? 8U : 12U, bigEndian(&head[3], 2), bigEndian(&head[8], 4)};
  return page.cells != 0 && (page.isLeaf() || number == innerNumber || keepInner(number));
}

// A search in an inner page reads a dozen cells, and the root is searched for every block.
bool OverflowPages::keepInner(std::uint64_t number) {
  innerNumber = 0;
  innerPage.resize(usableBytes);
  if (!take(number, 0, innerPage.data(), innerPage.size())) {
    return false;
  }
  innerNumber = number;
  return true;
}

bool OverflowPages::readCell(const TreePage& page, std::uint64_t index, Cell& cell) {
  std::array<unsigned char, 2> pointer{};
  if (!take(page.number, page.headBytes + 2 * index, pointer.data(), pointer.size())) {
    return false;
  }
  cell.offset = bigEndian(pointer.data(), pointer.size());
  if (cell.offset < page.headBytes + 2 * page.cells || cell.offset >= usableBytes) {
    return false;
  }
  cell.size = static_cast<std::size_t>(std::min<std::uint64_t>(cell.start.size(), usableBytes - cell.offset));
  if (cell.size <= pointerBytes || !take(page.number, cell.offset, cell.start.data(), cell.size)) {
    return false;
  }
  const std::size_t skipped = page.isLeaf() ? 0 : pointerBytes;
  Numbers numbers(cell.start.data() + skipped, cell.size - skipped);
  const auto first = numbers.next();
  const auto key = page.isLeaf() ? numbers.next() : first;
  cell.key = static_cast<std::int64_t>(key.value_or(0));
  return first && key;
}

bool OverflowPages::search(const TreePage& page, std::int64_t rowId, Place& place) {
  place = {};
  Cell probe;
  std::uint64_t low = 0;
  std::uint64_t high = page.cells;
  while (low < high) {
    const std::uint64_t middle = low + (high - low) / 2;
    if (!readCell(page, middle, probe)) {
      return false;
    }
    if (probe.key < rowId) {
      low = middle + 1;
      place.hasBefore = true;
      place.before = probe.key;
    } else {
      high = middle;
      place.exists = true;
      place.cell = probe;
    }
  }
  return true;
}

bool OverflowPages::descend(std::int64_t rowId, TreePage& leaf) {
  std::int64_t least = std::numeric_limits<std::int64_t>::min();
  std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
  std::uint64_t number = root;
  Place place;
  for (int level = 0; level < mostLevels; ++level) {
    if (!openTreePage(number, leaf)) {
      return false;
    }
    if (leaf.isLeaf()) {
      leafNumber = number;
      after = least;
      upTo = greatest;
      return true;
    }
    if (!search(leaf, rowId, place)) {
      return false;
    }
    least = place.hasBefore ? place.before : least;
    greatest = place.exists ? place.cell.key : greatest;
    number = place.exists ? bigEndian(place.cell.start.data(), pointerBytes) : leaf.lastChild;
  }
  return false;
}

bool OverflowPages::find(std::int64_t rowId, std::uint64_t bytes) {
  blobBytes = bytesLeft = 0;
  if (usableBytes == 0 || bytes > lockByte || sqlite3_txn_state(connection, "main") != SQLITE_TXN_READ) {
    return false;
  }
  TreePage leaf;
  const bool isNear = after < rowId && rowId <= upTo;
  Place place;
  if (!(isNear ? openTreePage(leafNumber, leaf) && leaf.isLeaf() : descend(rowId, leaf)) ||
      !search(leaf, rowId, place) || !place.exists || place.cell.key != rowId) {
    return false;
  }
  return enterCell(leaf, place.cell, bytes);
}

bool OverflowPages::enterCell(const TreePage& leaf, const Cell& cell, std::uint64_t bytes) {
  Numbers numbers(cell.start.data(), cell.size);
  const std::uint64_t payload = numbers.next().value_or(0);
  numbers.next(); // the key
  const std::size_t headBytes = numbers.taken();
  const auto before = bytesBeforeBlob(cell.start.data() + headBytes, cell.size - headBytes, bytes);
  const std::uint64_t local = localBytes(payload, usableBytes);
  std::array<unsigned char, pointerBytes> pointer{};
  if (!before || *before + bytes != payload || local == payload || *before > local ||
      !take(leaf.number, cell.offset + headBytes + local, pointer.data(), pointer.size())) {
    return false;
  }
  blobBytes = bytesLeft = bytes;
  localPage = leaf.number;
  localOffset = startOffset = cell.offset + headBytes + *before;
  localLeft = startLeft = local - *before;
  chainPage = startChain = bigEndian(pointer.data(), pointer.size());
  chainOffset = 0;
  return true;
}

bool OverflowPages::seek(std::uint64_t offset) {
  if (offset > blobBytes) {
    return false;
  }
  if (offset == blobBytes - bytesLeft) {
    return true;
  }
  bytesLeft = blobBytes - offset;
  localOffset = startOffset + std::min(offset, startLeft);
  localLeft = startLeft - std::min(offset, startLeft);
  const std::uint64_t inChain = offset - std::min(offset, startLeft);
  const std::uint64_t payload = usableBytes - pointerBytes;
  const std::uint64_t lockPage = lockByte / pageBytes + 1;
  chainPage = startChain + inChain / payload;
  chainPage += startChain < lockPage && chainPage >= lockPage ? 1 : 0;
  chainOffset = 0;
  if (inChain % payload == 0) {
    return true;
  }
  std::array<unsigned char, pointerBytes> pointer{};
  if (!take(chainPage, 0, pointer.data(), pointer.size())) {
    return false;
  }
  nextPage = bigEndian(pointer.data(), pointer.size());
  chainOffset = pointerBytes + inChain % payload;
  return true;
}

bool OverflowPages::read(unsigned char* to, std::size_t bytes) {
  if (bytes > bytesLeft) {
    return false;
  }
  auto done = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, localLeft));
  if (done != 0 && !take(localPage, localOffset, to, done)) {
    return false;
  }
  localOffset += done;
  localLeft -= done;
  while (done < bytes) {
    if (chainOffset == usableBytes) {
      chainPage = nextPage;
      chainOffset = 0;
    }
    const std::uint64_t room = usableBytes - std::max<std::uint64_t>(chainOffset, pointerBytes);
    const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(bytes - done, room));
    if (!readFromChain(to + done, done, part)) {
      return false;
    }
    done += part;
  }
  bytesLeft -= bytes;
  return true;
}

// Reads the pointer to the next page and the payload behind it in one call, over the four bytes before `to`, which are
// restored: half as many calls as reading the pointer separately. `before` bytes before `to` belong to this read.
bool OverflowPages::readFromChain(unsigned char* to, std::size_t before, std::size_t bytes) {
  std::array<unsigned char, pointerBytes> pointer{};
  if (chainOffset != 0) {
    if (!take(chainPage, chainOffset, to, bytes)) {
      return false;
    }
    chainOffset += bytes;
    return true;
  }
  if (before >= pointerBytes) {
    std::array<unsigned char, pointerBytes> kept{};
    unsigned char* const start = to - pointerBytes;
    std::memcpy(kept.data(), start, pointerBytes);
    const bool isThere = take(chainPage, 0, start, pointerBytes + bytes);
    std::memcpy(pointer.data(), start, pointerBytes);
    std::memcpy(start, kept.data(), pointerBytes);
    if (!isThere) {
      return false;
    }
  } else if (!take(chainPage, 0, pointer.data(), pointerBytes) || !take(chainPage, pointerBytes, to, bytes)) {
    return false;
  }
  nextPage = bigEndian(pointer.data(), pointerBytes);
  chainOffset = pointerBytes + bytes;
  return true;
}

} // namespace container
