// SPDX-License-Identifier: BSD-3-Clause
// Opening a database with files beside it, with other programs that have it open, and through links.
#include "tests/container/database_file.h"

#include <filesystem>
#include <ostream>
#include <sys/stat.h>

namespace {

using namespace containertest;

/// A connection as another program might have it, open until the end of the test.
class OtherProgram {
 public:
  OtherProgram(const std::string& path, const std::string& sql) {
    sqlite3_open(path.c_str(), &opened);
    EXPECT_EQ(sqlite3_exec(opened, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sql;
  }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;
  ~OtherProgram() { sqlite3_close(opened); }

 private:
  sqlite3* opened = nullptr;
};

class BesideTheFile : public testing::Test {
 protected:
  void SetUp() override { writeSample(path); }
  std::string item() const { return Database(path).item("riegl.time_base").value(); }
  std::string errorOfOpening() {
    return errorOf(directory, [this] { Database{path}; });
  }
  std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory.root())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }
  support::TempDir directory;
  std::string path = directory.path("\u00e4 %41?#&+.rdbx");
  const std::string name = "\u00e4 %41?#&+.rdbx";
};

TEST_F(BesideTheFile, NothingIsLeftByAReader) {
  EXPECT_EQ(item(), "{}");
  EXPECT_EQ(files(), std::vector<std::string>{name});
}

TEST_F(BesideTheFile, NothingIsLeftByAReaderOfAFileForConcurrentWriters) {
  execute(path, "PRAGMA journal_mode = WAL");
  EXPECT_EQ(item(), "{}");
  EXPECT_EQ(readColumn<unsigned char>(path, "riegl.class").size(), 10U);
  EXPECT_EQ(files(), std::vector<std::string>{name});
}

TEST_F(BesideTheFile, LogOfAConcurrentWriterCounts) {
  execute(path, "PRAGMA journal_mode = WAL");
  const OtherProgram writer(path, "UPDATE metadata SET value = '{\"new\": 1}'");
  EXPECT_EQ(item(), "{\"new\": 1}");
}

TEST_F(BesideTheFile, NamedPipeIsReportedWithoutWaiting) {
  for (const char* suffix : {"-journal", "-wal"}) {
    const std::string pipe = path + suffix;
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(errorOfOpening(), "cannot open the database (" + name + suffix +
                                    ": expected a regular file or none, found a named pipe)");
    std::filesystem::remove(pipe);
  }
}

TEST_F(BesideTheFile, JournalOfAnInterruptedChangeIsReported) {
  writeBytes(path + "-journal", std::vector<char>(1024, 'x'));
  EXPECT_EQ(errorOfOpening(),
            "cannot open the database (" + name +
                ": expected a finished file, found a journal of a change that was broken off beside it; a "
                "program that may write to the file can undo it)");
  EXPECT_EQ(files().size(), 2U);
}

TEST_F(BesideTheFile, EmptiedJournalIsPassedOver) {
  writeBytes(path + "-journal", {});
  EXPECT_EQ(item(), "{}");
  writeBytes(path + "-journal", std::vector<char>(1024, '\0'));
  EXPECT_EQ(item(), "{}");
}

TEST_F(BesideTheFile, WriterThatHoldsTheFileIsReported) {
  const OtherProgram writer(path, "BEGIN EXCLUSIVE");
  EXPECT_EQ(
      errorOfOpening(),
      "cannot open the database (" + name +
          ": expected a file that nobody is changing, found it locked; try again when the other program "
          "is done)");
}

TEST_F(BesideTheFile, NobodyChangesAFileThatIsOpen) {
  const Database database(path);
  EXPECT_THROW(execute(path, "UPDATE metadata SET value = 'other'"), std::runtime_error);
  EXPECT_EQ(database.item("riegl.time_base").value(), "{}");
}

TEST_F(BesideTheFile, NobodyChangesAFileWithoutRecordsThatIsOpen) {
  execute(path, "UPDATE database SET records = 0; DELETE FROM block");
  const Database database(path);
  EXPECT_THROW(execute(path, "UPDATE metadata SET value = 'other'"), std::runtime_error);
  EXPECT_EQ(database.item("riegl.time_base").value(), "{}");
}

TEST_F(BesideTheFile, LinkLeadsToTheFile) {
  std::filesystem::create_symlink(path, directory.path("link"));
  EXPECT_EQ(Database(directory.path("link")).recordCount(), 10U);
}

struct Link {
  const char* target;
  const char* found;

  friend void PrintTo(const Link& test, std::ostream* stream) {
    *stream << testing::PrintToString(test.target);
  }
};

class WrongLink : public BesideTheFile, public testing::WithParamInterface<Link> {};

TEST_P(WrongLink, IsReportedByItsTarget) {
  std::filesystem::create_symlink(GetParam().target, directory.path("link"));
  EXPECT_EQ(errorOf(directory, [this] { Database{directory.path("link")}; }),
            std::string("cannot open the database (link: expected a ") + GetParam().found + ")");
}

INSTANTIATE_TEST_SUITE_P(BesideTheFile, WrongLink,
                         testing::Values(Link{"/dev/zero", "regular file, found a device"},
                                         Link{"/", "regular file, found a directory"},
                                         Link{"nowhere", "readable file, found: No such file or directory"},
                                         Link{"link",
                                              "readable file, found: Too many levels of symbolic links"}));

TEST_F(BesideTheFile, MemoryThatRunsOutIsNoDamage) {
  execute(path, "UPDATE metadata SET value = hex(zeroblob(8000000))");
  const Database database(path);
  sqlite3_hard_heap_limit64(sqlite3_memory_used() + 4'000'000);
  EXPECT_THROW(database.item("riegl.time_base").value(), std::bad_alloc);
  sqlite3_hard_heap_limit64(0);
  EXPECT_EQ(database.item("riegl.time_base").value().size(), 16'000'000U);
}

} // namespace
