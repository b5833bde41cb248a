// SPDX-License-Identifier: BSD-3-Clause
// Blobs read from the pages of a file are those that SQLite reads, or none, for files of any origin and damage.
// Longer than other sources because every test needs the same writer of files and reader of pages.
#include "container/read/overflow_pages.h"

#include "tests/container/database_file.h"

#include <algorithm>
#include <filesystem>
#include <numeric>
#include <optional>
#include <ostream>

namespace {

using namespace containertest;
using container::OverflowPages;
using Bytes = std::vector<unsigned char>;

constexpr const char* table = "CREATE TABLE block (attribute INTEGER NOT NULL, number INTEGER NOT NULL, "
                              "checksum INTEGER, data BLOB NOT NULL, PRIMARY KEY (attribute, number));";

/// A connection of the test's own; `sql` runs first.
class File {
 public:
  explicit File(const std::string& path, const std::string& sql = "", int reserved = 0) {
    sqlite3_open(path.c_str(), &opened);
    sqlite3_file_control(opened, "main", SQLITE_FCNTL_RESERVE_BYTES, &reserved);
    run("PRAGMA synchronous = OFF");
    run(sql);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() { sqlite3_close(opened); }

  void run(const std::string& sql) {
    char* message = nullptr;
    EXPECT_EQ(sqlite3_exec(opened, sql.c_str(), nullptr, nullptr, &message), SQLITE_OK)
        << sql << ": " << (message == nullptr ? "" : message);
  }
  void insert(std::int64_t rowId, const Bytes& data) {
    sqlite3_stmt* row = nullptr;
    sqlite3_prepare_v2(
        opened, "INSERT INTO block (rowid, attribute, number, checksum, data) VALUES (?1, 1, ?1, ?2, ?3)", -1,
        &row, nullptr);
    sqlite3_bind_int64(row, 1, rowId);
    sqlite3_bind_int64(row, 2, 4'000'000'000);
    sqlite3_bind_blob64(row, 3, data.data(), data.size(), SQLITE_STATIC);
    EXPECT_EQ(sqlite3_step(row), SQLITE_DONE);
    sqlite3_finalize(row);
  }
  std::int64_t number(const std::string& sql) {
    sqlite3_stmt* row = nullptr;
    sqlite3_prepare_v2(opened, sql.c_str(), -1, &row, nullptr);
    const std::int64_t found = sqlite3_step(row) == SQLITE_ROW ? sqlite3_column_int64(row, 0) : 0;
    sqlite3_finalize(row);
    return found;
  }
  std::int64_t root() { return number("SELECT rootpage FROM sqlite_schema WHERE name = 'block'"); }
  std::optional<Bytes> throughSqlite(std::int64_t rowId) {
    sqlite3_blob* blob = nullptr;
    std::optional<Bytes> data;
    if (sqlite3_blob_open(opened, "main", "block", "data", rowId, 0, &blob) == SQLITE_OK) {
      data.emplace(static_cast<std::size_t>(sqlite3_blob_bytes(blob)));
      if (sqlite3_blob_read(blob, data->data(), sqlite3_blob_bytes(blob), 0) != SQLITE_OK) {
        data.reset();
      }
    }
    sqlite3_blob_close(blob);
    return data;
  }
  sqlite3* handle() { return opened; }

 private:
  sqlite3* opened = nullptr;
};

Bytes pattern(std::size_t bytes, std::uint64_t seed) {
  Bytes data(bytes);
  for (unsigned char& byte : data) {
    seed = seed * 6364136223846793005U + 1442695040888963407U;
    byte = static_cast<unsigned char>(seed >> 56);
  }
  return data;
}

/// Reads in pieces into the middle of a larger buffer, whose margins have to stay as they are.
std::optional<Bytes> readPieces(OverflowPages& pages, std::size_t bytes, std::size_t piece) {
  constexpr std::size_t margin = 64;
  Bytes buffer(bytes + 2 * margin, 0xa5);
  bool isRead = true;
  for (std::size_t done = 0; isRead && done < bytes; done += piece) {
    const std::size_t part = std::min(piece, bytes - done);
    const Bytes behind(buffer.begin() + static_cast<std::ptrdiff_t>(margin + done + part), buffer.end());
    isRead = pages.read(buffer.data() + margin + done, part);
    EXPECT_TRUE(std::equal(behind.rbegin(), behind.rend(), buffer.rbegin())) << "written behind the end";
  }
  EXPECT_TRUE(std::all_of(buffer.begin(), buffer.begin() + margin, [](auto byte) { return byte == 0xa5; }));
  return isRead ? std::optional(Bytes(buffer.begin() + margin, buffer.end() - margin)) : std::nullopt;
}

/// A file of one table, and a reader of it with an open transaction.
class Pages : public testing::Test {
 protected:
  std::optional<Bytes> straight(std::int64_t rowId, std::size_t bytes, std::size_t piece = 1 << 18) {
    if (!reader) {
      reader.emplace(path);
      reader->run("BEGIN");
      pages.emplace(reader->handle(), reader->root());
    }
    return pages->find(rowId, bytes) ? readPieces(*pages, bytes, piece) : std::nullopt;
  }
  void expectEqual(std::int64_t rowId, std::size_t piece = 1 << 18) {
    const auto expected = File(path).throughSqlite(rowId);
    ASSERT_TRUE(expected.has_value());
    EXPECT_TRUE(straight(rowId, expected->size(), piece) == expected)
        << "row " << rowId << " of " << expected->size() << " bytes";
  }
  void givenFile(const std::string& pragmas, const std::vector<std::size_t>& sizes) {
    File file(path, pragmas + table + "BEGIN");
    for (std::size_t i = 0; i < sizes.size(); ++i) {
      file.insert(static_cast<std::int64_t>(i) + 1, pattern(sizes[i], i));
    }
    file.run("COMMIT");
  }
  void reopen() {
    pages.reset();
    reader.reset();
  }
  /// Reads a blob of a damaged file; only the bounds of the read are checked. \return whether it was read
  bool readsAfter(const std::vector<char>& bytes, std::int64_t rowId, std::size_t blobBytes) {
    reopen();
    writeBytes(path, bytes);
    return straight(rowId, blobBytes).has_value();
  }
  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
  std::optional<File> reader;
  std::optional<OverflowPages> pages;
};

struct Shape {
  std::size_t pageBytes;
  int reserved;
  bool hasPointerMap;
};

void PrintTo(const Shape& shape, std::ostream* out) {
  *out << shape.pageBytes << " bytes, " << shape.reserved << " reserved, map " << shape.hasPointerMap;
}

class EveryShape : public Pages, public testing::WithParamInterface<Shape> {
 protected:
  std::size_t usable() const { return GetParam().pageBytes - static_cast<std::size_t>(GetParam().reserved); }
  /// Around every size at which the layout changes: no chain, a full page of it, one byte more.
  std::vector<std::size_t> sizes() const {
    std::vector<std::size_t> all{1, 7, 300'000, 3'000'001};
    for (const std::size_t edge : {usable() - 35, usable(), 2 * usable(), 5 * usable() - 20}) {
      for (std::size_t bytes = edge - 30; bytes < edge + 30; ++bytes) {
        all.push_back(bytes);
      }
    }
    return all;
  }
  void givenShape() {
    File file(path, pragmas() + table + "BEGIN", GetParam().reserved);
    for (const std::size_t bytes : sizes()) {
      file.insert(++rows, pattern(bytes, bytes));
    }
    file.run("COMMIT");
  }
  std::string pragmas() const {
    return "PRAGMA page_size = " + std::to_string(GetParam().pageBytes) +
           (GetParam().hasPointerMap ? "; PRAGMA auto_vacuum = FULL;" : ";");
  }
  std::int64_t rows = 0;
};

TEST_P(EveryShape, BlobOfAnySizeIsWhatSqliteReadsOrLeftToIt) {
  givenShape();
  EXPECT_EQ(static_cast<unsigned char>(bytesOf(path)[20]), GetParam().reserved);
  std::size_t left = 0;
  for (std::int64_t row = 1; row <= rows; ++row) {
    const auto expected = File(path).throughSqlite(row).value();
    const auto found = straight(row, expected.size(), 1 + expected.size() / 3);
    EXPECT_TRUE(!found || *found == expected) << expected.size() << " bytes";
    left += found ? 0 : 1;
  }
  // Head and first columns take 13 to 15 bytes, and a payload of usable - 35 bytes has no chain.
  const auto all = sizes();
  const auto isSmall = [this](std::size_t bytes) {
    return bytes + 14 + (bytes > 8186 ? 2 : bytes > 57 ? 1 : 0) <= usable() - 35;
  };
  const auto small = static_cast<std::size_t>(std::count_if(all.begin(), all.end(), isSmall));
  EXPECT_NEAR(static_cast<double>(left), static_cast<double>(small), 4);
}

INSTANTIATE_TEST_SUITE_P(Of, EveryShape,
                         testing::Values(Shape{512, 0, false}, Shape{512, 32, false}, Shape{512, 0, true},
                                         Shape{1024, 8, true}, Shape{2048, 0, false}, Shape{4096, 0, true},
                                         Shape{4096, 255, false}, Shape{8192, 0, false},
                                         Shape{16384, 0, false}, Shape{32768, 16, false},
                                         Shape{65536, 0, false}, Shape{65536, 0, true},
                                         Shape{65536, 13, false}));

TEST_F(Pages, EveryPieceSizeGivesTheSameBytes) {
  givenFile("PRAGMA page_size = 512;", {5000});
  for (std::size_t piece = 1; piece < 1100; ++piece) {
    expectEqual(1, piece);
  }
}

TEST_F(Pages, ChainThroughFreedPagesIsFollowed) {
  givenFile("PRAGMA page_size = 1024;", std::vector<std::size_t>(60, 9000));
  File file(path, "DELETE FROM block WHERE rowid % 3 = 0");
  for (std::int64_t row = 100; row < 110; ++row) {
    file.insert(row, pattern(25'000, static_cast<std::uint64_t>(row)));
    expectEqual(row);
    reopen();
  }
  expectEqual(2);
}

TEST_F(Pages, RowsOfADeepTreeAreFoundInAnyOrder) {
  givenFile("PRAGMA page_size = 512;", std::vector<std::size_t>(4000, 700));
  for (std::int64_t i = 0; i < 4000; i += 7) {
    expectEqual(i * 1999 % 4000 + 1);
  }
}

TEST_F(Pages, NegativeAndGreatestRowIdsAreFound) {
  givenFile("PRAGMA page_size = 512;", std::vector<std::size_t>(50, 700));
  for (const std::int64_t row : {INT64_MIN, std::int64_t{-1}, std::int64_t{0}, INT64_MAX}) {
    File(path).insert(row, pattern(2000, 5));
    expectEqual(row);
    reopen();
  }
}

TEST_F(Pages, WhatIsNotAsExpectedIsLeftToSqlite) {
  givenFile("PRAGMA page_size = 512;", std::vector<std::size_t>(50, 700));
  EXPECT_TRUE(straight(7, 700));
  EXPECT_FALSE(straight(7, 699));
  EXPECT_FALSE(straight(7, 701));
  EXPECT_FALSE(straight(51, 700));
  EXPECT_FALSE(straight(0, 700));
  EXPECT_FALSE(straight(7, std::size_t{1} << 40));
}

TEST_F(Pages, MoreThanTheBlobHasIsRefused) {
  givenFile("PRAGMA page_size = 512;", {700, 700});
  ASSERT_TRUE(straight(1, 700));
  unsigned char byte = 0;
  EXPECT_FALSE(pages->read(&byte, 1));
}

TEST_F(Pages, OtherColumnsAreLeftToSqlite) {
  for (const char* change : {"ALTER TABLE block ADD COLUMN more; UPDATE block SET more = 1",
                             "UPDATE block SET checksum = 'text'", "UPDATE block SET data = hex(data)"}) {
    std::filesystem::remove(path);
    givenFile("PRAGMA page_size = 512;", {700});
    ASSERT_TRUE(straight(1, 700));
    reopen();
    execute(path, change);
    EXPECT_FALSE(straight(1, 700)) << change;
    EXPECT_FALSE(straight(1, 1400)) << change;
    reopen();
  }
}

TEST_F(Pages, NothingIsReadOutsideATransaction) {
  givenFile("PRAGMA page_size = 512;", {700});
  ASSERT_TRUE(straight(1, 700));
  reader->run("COMMIT");
  EXPECT_FALSE(straight(1, 700));
  reader->run("BEGIN; SELECT * FROM block");
  EXPECT_TRUE(straight(1, 700));
}

TEST_F(Pages, FileForConcurrentWritersIsLeftToSqlite) {
  givenFile("PRAGMA page_size = 512; PRAGMA journal_mode = WAL;", {700});
  EXPECT_FALSE(straight(1, 700));
}

TEST_F(Pages, FileHeadWithOddValuesIsLeftToSqlite) {
  givenFile("PRAGMA page_size = 512;", {700});
  const auto sound = bytesOf(path);
  ASSERT_TRUE(straight(1, 700));
  for (const auto& [at, value] :
       {std::pair{16, 0}, {16, 1}, {16, 3}, {17, 1}, {17, 2}, {18, 2}, {19, 2}, {20, 33}}) {
    auto bytes = sound;
    bytes[static_cast<std::size_t>(at)] = static_cast<char>(value);
    writeBytes(path, bytes);
    EXPECT_FALSE(OverflowPages(reader->handle(), reader->root()).find(1, 700)) << at << " as " << value;
  }
}

TEST_F(Pages, RootOutsideTheFileIsRefused) {
  givenFile("PRAGMA page_size = 512;", {700});
  reader.emplace(path);
  reader->run("BEGIN; SELECT * FROM block");
  for (const std::int64_t root :
       {std::int64_t{-1}, std::int64_t{0}, std::int64_t{1}, std::int64_t{3}, INT64_MAX}) {
    EXPECT_FALSE(OverflowPages(reader->handle(), root).find(1, 700)) << root;
  }
  EXPECT_TRUE(OverflowPages(reader->handle(), reader->root()).find(1, 700));
}

/// A blob of ten pages, whose chain begins at page 4 (2 is the table, 3 its index).
class Chain : public Pages {
 protected:
  void SetUp() override {
    givenFile("PRAGMA page_size = 512;", {blobBytes});
    sound = bytesOf(path);
    ASSERT_TRUE(straight(1, blobBytes));
  }
  std::vector<char> withNumber(std::size_t at, std::uint32_t number) const {
    std::vector<char> bytes = sound;
    for (std::size_t i = 0; i < 4; ++i) {
      bytes[at + i] = static_cast<char>(number >> (24 - 8 * i));
    }
    return bytes;
  }
  static constexpr std::size_t blobBytes = 10 * 508;
  std::vector<char> sound;
};

TEST_F(Chain, PointerOutsideTheFileIsRefused) {
  const auto last = static_cast<std::uint32_t>(sound.size() / 512);
  for (const std::size_t page : {4U, 5U, 8U}) {
    for (const std::uint32_t number : {0U, 1U, last + 1, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
      EXPECT_FALSE(readsAfter(withNumber((page - 1) * 512, number), 1, blobBytes)) << page << ": " << number;
    }
  }
}

TEST_F(Chain, SizeOfThePayloadThatIsNotItsRecordsIsRefused) {
  const auto cell = 512 + std::size_t{static_cast<unsigned char>(sound[512 + 8])} * 256 +
                    static_cast<unsigned char>(sound[512 + 9]);
  for (const int by : {-1, 1, 5}) {
    auto bytes = sound;
    bytes[cell + 1] = static_cast<char>(bytes[cell + 1] + by); // the second of the size's two bytes
    EXPECT_FALSE(readsAfter(bytes, 1, blobBytes)) << by;
  }
}

TEST_F(Chain, PointerElsewhereGivesOtherBytesAndEnds) {
  const Bytes expected = *straight(1, blobBytes);
  for (const std::uint32_t number : {2U, 3U, 4U, 5U}) {
    ASSERT_TRUE(readsAfter(withNumber(4 * 512, number), 1, blobBytes) || number < 4) << number;
    EXPECT_NE(straight(1, blobBytes), expected);
  }
}

TEST_F(Chain, FileCutAnywhereBeforeItsEndIsRefused) {
  std::size_t accepted = 0;
  reopen();
  reader.emplace(path);
  reader->run("BEGIN; SELECT * FROM block");
  for (std::size_t length = sound.size() - 1; length > 512; length -= 97) {
    std::filesystem::resize_file(path, length);
    OverflowPages cut(reader->handle(), 2);
    accepted += cut.find(1, blobBytes) && readPieces(cut, blobBytes, 1000) ? 1 : 0;
  }
  EXPECT_EQ(accepted, 0U);
}

TEST_F(Chain, FileCutWhileItIsReadIsRefused) {
  ASSERT_TRUE(pages->find(1, blobBytes));
  std::filesystem::resize_file(path, sound.size() - 512 - 100);
  EXPECT_FALSE(readPieces(*pages, blobBytes, 1000));
}

TEST_F(Pages, ChangedByteOfATreeStaysInBounds) {
  givenFile("PRAGMA page_size = 512;", std::vector<std::size_t>(200, 700));
  const auto sound = bytesOf(path);
  reader.emplace(path);
  reader->run("BEGIN; SELECT * FROM block");
  const auto root = static_cast<std::size_t>(reader->root());
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  std::size_t refused = 0;
  for (std::size_t at = (root - 1) * 512; at < root * 512; ++at) {
    for (const int value : {0, 1, 5, 13, 127, 128, 255}) {
      file.seekp(static_cast<std::streamoff>(at)).put(static_cast<char>(value)).flush();
      OverflowPages damaged(reader->handle(), static_cast<std::int64_t>(root));
      for (const std::int64_t row : {1, 77, 200}) {
        refused += damaged.find(row, 700) && readPieces(damaged, 700, 300) ? 0 : 1;
      }
    }
    file.seekp(static_cast<std::streamoff>(at)).put(sound[at]).flush();
  }
  EXPECT_GT(refused, 50U);
}

TEST_F(Pages, TreeThatLeadsToItselfEnds) {
  givenFile("PRAGMA page_size = 512;", std::vector<std::size_t>(200, 700));
  auto bytes = bytesOf(path);
  ASSERT_EQ(bytes[512], 5);
  const auto inner = bytes.begin() + 512;
  std::copy_n("\0\0\0\2", 4, inner + 8);
  reader.emplace(path);
  reader->run("BEGIN; SELECT * FROM block");
  writeBytes(path, bytes);
  EXPECT_FALSE(OverflowPages(reader->handle(), 2).find(100'000, 700));
}

/// The chain of a blob moved to where the file's byte 2^30 is; the file is a hole up to there.
class AcrossTheLockByte : public Pages {
 protected:
  void givenChainFrom(std::uint64_t first, bool skipsLockPage) {
    givenFile("PRAGMA page_size = 65536;", {blobBytes});
    const auto sound = bytesOf(path);
    std::filesystem::resize_file(path, (lockPage + 5) * pageBytes);
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    const auto put = [&](std::uint64_t at, std::uint64_t number) {
      const std::uint64_t bytes = __builtin_bswap32(static_cast<std::uint32_t>(number));
      file.seekp(static_cast<std::streamoff>(at)).write(reinterpret_cast<const char*>(&bytes), 4);
    };
    put(28, lockPage + 5);
    for (std::uint64_t from = 4, to = first; from * pageBytes <= sound.size(); ++from) {
      const std::uint64_t next = to + (skipsLockPage && to + 1 == lockPage ? 2 : 1);
      file.seekp(static_cast<std::streamoff>((to - 1) * pageBytes));
      file.write(&sound[(from - 1) * pageBytes], pageBytes);
      put((to - 1) * pageBytes, next);
      to = next;
    }
    const char old[] = {0, 0, 0, 4}; // the pointer ends the last cell, which ends the leaf
    ASSERT_TRUE(std::equal(old, old + 4, &sound[2 * pageBytes - 4]));
    put(2 * pageBytes - 4, first);
  }
  static constexpr std::uint64_t pageBytes = 65536;
  static constexpr std::uint64_t lockPage = (1U << 30) / pageBytes + 1;
  static constexpr std::size_t blobBytes = 4 * 65532 + 10'000;
};

TEST_F(AcrossTheLockByte, ChainThatSkipsItsPageIsRead) {
  givenChainFrom(lockPage - 2, true);
  expectEqual(1);
  EXPECT_EQ(straight(1, blobBytes), pattern(blobBytes, 0));
}

TEST_F(AcrossTheLockByte, ChainThroughItsPageIsRefused) {
  givenChainFrom(lockPage - 2, false);
  EXPECT_FALSE(straight(1, blobBytes));
}

} // namespace
