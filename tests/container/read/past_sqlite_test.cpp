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

int reads = 0;     ///< such reads so far
int wrongFrom = 0; ///< index of the first read that is answered wrongly
int wrongTo = 0;   ///< index behind the last one
Answer wrong = Answer::right;
const sqlite3_io_methods* original = nullptr;
sqlite3_io_methods methods;
sqlite3_vfs* system = nullptr;

constexpr int pageBytes = 65536;

int answer(sqlite3_file* file, void* to, int bytes, sqlite3_int64 position) {
  const bool isSqlites = position < pageBytes || (bytes == pageBytes && position % pageBytes == 0);
  const int status = original->xRead(file, to, bytes, position);
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
    writeColumn(path, {"riegl.xyz", ElementType::float64, 3}, points, {50'000, checksums});
    sqlite3_vfs_register(&watched, 1);
    reads = 0;
  }
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

TEST_F(PastSqlite, DamagedBlockIsReportedAsSqliteReadsIt) {
  givenDatabase(true);
  execute(path, "UPDATE block SET checksum = checksum - 1 WHERE number = 1");
  const std::string error = errorOf(directory, [this] { load(); });
  EXPECT_THAT(error,
              testing::StartsWith("the database is damaged (column \"riegl.xyz\" of scan.rdbx, block 1: "
                                  "expected checksum "));
}

} // namespace
