// SPDX-License-Identifier: BSD-3-Clause
// Reads that bypass SQLite's page cache, and their fallback to SQLite where the file answers them wrongly.
#include "tests/container/database_file.h"

#include <gmock/gmock.h>
#include <limits>
#include <utility>

namespace {

using namespace containertest;

/// How the file answers reads that SQLite would not make itself: all but those of whole pages.
enum class Answer { right, failure, shortRead, otherBytes };

void PrintTo(Answer answer, std::ostream* stream) {
  static constexpr const char* names[] = {"right", "failure", "shortRead", "otherBytes"};
  *stream << names[static_cast<int>(answer)];
}

int reads = 0;              ///< such reads so far
std::int64_t bytesRead = 0; ///< by all reads
int opened = 0;             ///< connections
int wrongFrom = 0;          ///< index of the first read that is answered wrongly
int wrongTo = 0;            ///< index behind the last one
Answer wrong = Answer::right;
const sqlite3_io_methods* original = nullptr;
sqlite3_io_methods methods;
sqlite3_vfs* system = nullptr;

constexpr int pageBytes = 65536;

int answer(sqlite3_file* file, void* to, int bytes, sqlite3_int64 position) {
  const bool isSqlites = position < pageBytes || (bytes == pageBytes && position % pageBytes == 0);
  const int status = original->xRead(file, to, bytes, position);
  bytesRead += bytes;
  if (isSqlites || wrong == Answer::right) {
    reads += isSqlites ? 0 : 1;
    return status;
  }
  const int index = reads++;
  if (index < wrongFrom || index >= wrongTo) {
    return status;
  }
  if (wrong == Answer::failure) {
    return SQLITE_IOERR_READ;
  }
  for (int i = 0; i < bytes; ++i) {
    static_cast<unsigned char*>(to)[i] ^= 0x5a;
  }
  return wrong == Answer::shortRead ? SQLITE_IOERR_SHORT_READ : status;
}

int openWatched(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* given) {
  const int status = system->xOpen(system, name, file, flags, given);
  if (status == SQLITE_OK && (flags & SQLITE_OPEN_MAIN_DB) != 0) {
    original = file->pMethods;
    methods = *original;
    methods.xRead = answer;
    ++opened;
    file->pMethods = &methods;
  }
  return status;
}

/// A database of blocks of 1,200,000 and 400,000 bytes, opened through a file system of the test.
class PastSqlite : public testing::TestWithParam<Answer> {
 protected:
  void SetUp() override {
    for (std::size_t i = 0; i < points.size(); ++i) {
      points[i] = static_cast<double>(i) * 0.37;
    }
    system = sqlite3_vfs_find(nullptr);
    watched = *system;
    watched.zName = "watched";
    watched.xOpen = openWatched;
    wrong = Answer::right;
  }
  void TearDown() override {
    sqlite3_vfs_unregister(&watched);
    sqlite3_vfs_register(system, 1);
  }
  void givenDatabase(bool checksums) {
    writeColumn(path, {"riegl.xyz", ElementType::float64, 3}, points, version1(50'000, checksums));
    sqlite3_vfs_register(&watched, 1);
    reads = 0;
  }
  /// Four columns in one block of 120,000 records each; if encoded, in pieces of 10922.
  void givenLargeBlocks(container::BlockEncoding encoding) {
    std::uint64_t state = 1;
    for (double& value : points) {
      state = state * 6364136223846793005U + 1442695040888963407U;
      value = static_cast<double>(state >> 36) * 0.001; // not small when encoded
    }
    Writer writer(path, {1'000'000, true, 2, encoding});
    for (const char* name : {"riegl.xyz", "b", "c", "d"}) {
      writer.addAttribute({name, ElementType::float64, 3});
    }
    writer.write(points.size() / 3, {points.data(), points.data(), points.data(), points.data()});
    writer.finish();
    sqlite3_vfs_register(&watched, 1);
    reads = 0;
    bytesRead = 0;
    opened = 0;
  }
  /// 1000 records from record 60,000 on.
  std::vector<double> loadMiddle() {
    Cursor cursor{Database(path)};
    cursor.next(60'000);
    std::vector<double> found(3000);
    cursor.bind("c", ElementType::float64, found.data());
    EXPECT_EQ(cursor.next(1000), 1000U);
    return found;
  }
  std::vector<double> middle() const { return {points.begin() + 180'000, points.begin() + 183'000}; }
  std::vector<double> load(unsigned atOnce = 200'000) {
    return readColumn<double>(path, "riegl.xyz", atOnce);
  }
  int readsOfSoundLoad() {
    EXPECT_EQ(load(), points);
    return std::exchange(reads, 0);
  }
  sqlite3_vfs watched{};
  std::vector<double> points = std::vector<double>(3 * 120'000);
  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
};

TEST_F(PastSqlite, BlocksWithChecksumsAreReadStraight) {
  givenDatabase(true);
  const int found = readsOfSoundLoad();
  EXPECT_EQ(found > 10, RDB2NIMBRA_DIRECT_PAGES != 0) << found;
}

TEST_F(PastSqlite, BlocksWithoutChecksumsAreSqlites) {
  givenDatabase(false);
  EXPECT_EQ(readsOfSoundLoad(), 0);
}

TEST_F(PastSqlite, RecordsOfABlockThatIsVerifiedAreSqlites) {
  givenDatabase(true);
  const int whole = readsOfSoundLoad();
  EXPECT_EQ(load(7'000), points);
  EXPECT_LE(reads, whole * 2);
}

TEST_P(PastSqlite, WrongAnswerToAnyReadLeavesTheBlockToSqlite) {
  givenDatabase(true);
  const int count = readsOfSoundLoad();
  wrong = GetParam();
  for (wrongFrom = 0; wrongFrom < count; ++wrongFrom) {
    wrongTo = wrongFrom + 1;
    reads = 0;
    EXPECT_EQ(load(), points) << "read " << wrongFrom;
  }
}

TEST_P(PastSqlite, WrongAnswersFromAnyReadOnLeaveTheRestToSqlite) {
  givenDatabase(true);
  const int count = readsOfSoundLoad();
  wrong = GetParam();
  wrongTo = std::numeric_limits<int>::max();
  for (wrongFrom = 0; wrongFrom < count; ++wrongFrom) {
    reads = 0;
    EXPECT_EQ(load(), points) << "from read " << wrongFrom;
  }
}

INSTANTIATE_TEST_SUITE_P(Of, PastSqlite,
                         testing::Values(Answer::failure, Answer::shortRead, Answer::otherBytes));

TEST_F(PastSqlite, OpeningReadsNoBlock) {
  givenLargeBlocks(container::BlockEncoding::lz4);
  const std::size_t size = bytesOf(path).size();
  const Database database(path);
  EXPECT_LT(bytesRead, 12 * pageBytes);
  EXPECT_GT(size, 40U * pageBytes);
}

TEST_F(PastSqlite, RangeOfAnEncodedBlockReadsItsPiecesOnly) {
  givenLargeBlocks(container::BlockEncoding::lz4);
  const std::uint64_t blockBytes = Database(path).storage("c").bytes;
  bytesRead = 0;
  EXPECT_EQ(loadMiddle(), middle());
  EXPECT_GT(blockBytes, 10U * pageBytes);
  if (RDB2NIMBRA_DIRECT_PAGES != 0) {
    EXPECT_LT(bytesRead, 12 * pageBytes + 4 * pageBytes);
  }
}

TEST_F(PastSqlite, RangeOfLargeRawBlocksIsVerifiedOnTwoThreads) {
  givenLargeBlocks(container::BlockEncoding::raw);
  std::vector<std::vector<double>> found(4, std::vector<double>(30));
  Cursor cursor{Database(path, 2)};
  cursor.next(60'000);
  cursor.bind("riegl.xyz", ElementType::float64, found[0].data());
  EXPECT_EQ(std::exchange(opened, 0), 1);
  EXPECT_EQ(cursor.next(10), 10U);
  EXPECT_EQ(opened, 0) << "a block of 3 MB is no work for two threads";
  cursor.bind("b", ElementType::float64, found[1].data());
  cursor.bind("c", ElementType::float64, found[2].data());
  cursor.bind("d", ElementType::float64, found[3].data());
  EXPECT_EQ(cursor.next(10), 10U);
  EXPECT_EQ(opened, 1) << "three blocks of 3 MB are";
  EXPECT_THAT(found, testing::Each(std::vector<double>(points.begin() + 180'030, points.begin() + 180'060)));
}

TEST_P(PastSqlite, WrongAnswersLeaveThePiecesToSqlite) {
  givenLargeBlocks(container::BlockEncoding::lz4);
  EXPECT_EQ(loadMiddle(), middle());
  const int count = std::exchange(reads, 0);
  EXPECT_EQ(count > 3, RDB2NIMBRA_DIRECT_PAGES != 0) << count;
  wrong = GetParam();
  wrongTo = std::numeric_limits<int>::max();
  for (wrongFrom = 0; wrongFrom < count; ++wrongFrom) {
    reads = 0;
    EXPECT_EQ(loadMiddle(), middle()) << "from read " << wrongFrom;
  }
}

TEST_F(PastSqlite, DamagedBlockIsReportedAsSqliteReadsIt) {
  givenDatabase(true);
  execute(path, "UPDATE block SET checksum = checksum - 1 WHERE number = 1");
  const std::string error = errorOf(directory, [this] { load(); });
  EXPECT_THAT(error,
              testing::StartsWith("the database is damaged (column \"riegl.xyz\" of scan.rdbx, block 1: "
                                  "expected checksum "));
}

} // namespace
