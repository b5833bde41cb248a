// SPDX-License-Identifier: BSD-3-Clause
// Copies with another encoding, and files of version 1 that become version 2.
#include "container/read/database.h"
#include "container/write/writer.h"
#include "tests/apps/rdbtool/stored_content.h"
#include "tests/apps/rdbtool/tool_run.h"
#include "tests/support/file_content.h"
#include "tests/support/temp_dir.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <tuple>

namespace {

namespace fs = std::filesystem;
using support::storedContent;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

std::string corpusFile(const std::string& name) {
  return std::string(CORPUS) + "/version1/" + name + ".rdbx";
}

class Copies : public testing::Test {
 protected:
  support::Run run(const std::vector<std::string>& arguments) const { return support::runTool(arguments); }
  support::Run recoding(const std::string& input, const std::string& encoding,
                        const std::string& output) const {
    return run({"recode", input, "-o", output, "--encoding", encoding});
  }
  std::string scan(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"synth",        "scan", "--records", "5000",
                                          "--block-rows", "700",  "-o",        in};
    arguments.insert(arguments.end(), more.begin(), more.end());
    EXPECT_EQ(run(arguments).status, 0);
    return in;
  }
  /// A file of version 1 that may be changed.
  std::string version1(const std::string& name = "every_type") const {
    fs::copy_file(corpusFile(name), in);
    fs::permissions(in, fs::perms::owner_read | fs::perms::owner_write);
    return in;
  }
  void expectRefused(const support::Run& result, int status, const std::string& text) const {
    EXPECT_EQ(result.status, status);
    EXPECT_EQ(result.err, "rdbtool: " + text + "\n");
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_FALSE(fs::exists(out)) << "something was left behind";
  }
  support::TempDir folder;
  std::string in = folder.path("in.rdbx"), out = folder.path("out.rdbx");
};

class EveryEncoding : public Copies, public testing::WithParamInterface<const char*> {};

TEST_P(EveryEncoding, KeepsAllOfAScan) {
  ASSERT_EQ(recoding(scan(), GetParam(), out).status, 0);
  EXPECT_EQ(storedContent(out), storedContent(in));
  EXPECT_EQ(run({"verify", out}).status, 0);
}

TEST_P(EveryEncoding, KeepsEveryTypeOfVersion1) {
  for (const char* name : {"every_type", "without_checksums", "empty"}) {
    ASSERT_EQ(recoding(corpusFile(name), GetParam(), out).status, 0) << name;
    EXPECT_EQ(storedContent(out), storedContent(corpusFile(name))) << name;
    EXPECT_EQ(container::Database(out).version(), 2);
    EXPECT_EQ(run({"verify", out}).status, 0);
  }
}

TEST_P(EveryEncoding, ComesBackThroughTheOthers) {
  scan({"--encoding", GetParam()});
  for (const char* encoding : {"raw", "lz4", "deflate"}) {
    ASSERT_EQ(recoding(in, encoding, folder.path("between")).status, 0);
    ASSERT_EQ(recoding(folder.path("between"), GetParam(), out).status, 0);
    EXPECT_EQ(storedContent(out), storedContent(in)) << encoding;
  }
}

INSTANTIATE_TEST_SUITE_P(Of, EveryEncoding, testing::Values("raw", "lz4", "deflate"),
                         [](const auto& row) { return std::string(row.param); });

TEST_F(Copies, EncodedOnesAreSmaller) {
  ASSERT_EQ(run({"synth", "scan", "--records", "20000", "-o", in}).status, 0);
  const std::uintmax_t rawBytes = fs::file_size(in);
  ASSERT_EQ(recoding(in, "lz4", out).status, 0);
  const std::uintmax_t lz4Bytes = fs::file_size(out);
  ASSERT_EQ(recoding(in, "deflate", out).status, 0);
  EXPECT_LT(lz4Bytes, rawBytes);
  EXPECT_LT(fs::file_size(out), lz4Bytes);
}

TEST_F(Copies, RecordsPerBlockChangeOnlyOnRequest) {
  ASSERT_EQ(run({"recode", scan(), "-o", out, "--encoding", "lz4", "--block-rows", "333"}).status, 0);
  support::StoredContent expected = storedContent(in);
  EXPECT_EQ(expected.blockRows, 700U);
  expected.blockRows = 333;
  EXPECT_EQ(storedContent(out), expected);
}

TEST_F(Copies, UnderAnotherKindsNameAreNoted) {
  const support::Run result = recoding(scan(), "raw", folder.path("out.pofx"));
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, folder.path("out.pofx") +
                            ": expected the extension .rdbx for points, found a name that a "
                            "load reads as a trajectory\n");
}

TEST_F(Copies, NeverReplaceTheirInput) {
  const std::string before = support::contentOf(scan());
  fs::create_symlink(in, folder.path("link.rdbx"));
  for (const std::string& same : {in, folder.path("./in.rdbx"), folder.path("link.rdbx")}) {
    const std::string text = same + ": expected an output other than " + in + ", found the same file";
    expectRefused(recoding(in, "lz4", same), 2, text);
    expectRefused(run({"upgrade", in, "-o", same}), 2, text);
  }
  EXPECT_EQ(support::contentOf(in), before);
}

TEST_F(Copies, OfADamagedBlockFailAndKeepTheOldOutput) {
  scan();
  ASSERT_EQ(run({"synth", "scan", "--records", "1", "-o", out}).status, 0);
  const std::string before = support::contentOf(out);
  run({"damage", in, "--attribute", "riegl.class", "--block", "2", "--flip-byte", "9"});
  const support::Run result = recoding(in, "lz4", out);
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, HasSubstr("column \"riegl.class\" of " + in + ", block 2: expected checksum "));
  EXPECT_EQ(support::contentOf(out), before);
  EXPECT_EQ(std::distance(begin(fs::directory_iterator(folder.root())), {}), 2)
      << "something was left behind";
}

TEST_F(Copies, NeedAnEncoding) {
  expectRefused(run({"recode", scan(), "-o", out}), 2, "--encoding is required; see --help");
  for (const char* name : {"", "LZ4", "zlib", "0"}) {
    expectRefused(recoding(in, name, out), 2,
                  std::string("--encoding: expected raw, lz4 or deflate, found ") + name);
  }
}

TEST_F(Copies, NeedAnInput) {
  const std::string absent = folder.path("absent.rdbx");
  expectRefused(recoding(absent, "raw", out), 3, absent + ": expected a file to read, found none");
  expectRefused(run({"upgrade", absent}), 3, absent + ": expected a file to read, found none");
  expectRefused(run({"upgrade", scan(), "-o", ""}), 2,
                "--output: expected the path of a file, found an empty text");
}

/// Makes a file of version 1 that states records but has no attributes.
void writeRecordsWithoutAttributes(const std::string& path) {
  container::WriterSettings settings;
  settings.version = 1;
  container::Writer(path, settings).finish();
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, "UPDATE database SET records = 5", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(database);
}

TEST_F(Copies, OfRecordsWithoutAttributesAreRefused) {
  writeRecordsWithoutAttributes(in);
  const std::string text = "the catalogue of the database is wrong: table \"database\" of " + in +
                           ": expected no records without attributes, found 5 records";
  expectRefused(recoding(in, "raw", out), 1, text);
  expectRefused(run({"upgrade", in}), 1, text);
}

class Upgrade : public Copies {};

TEST_F(Upgrade, InPlaceKeepsTheContent) {
  for (const char* name : {"every_type", "without_checksums", "empty"}) {
    fs::remove(in);
    const support::Run result = run({"upgrade", version1(name)});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err + result.out, "");
    EXPECT_EQ(container::Database(in).version(), 2);
    EXPECT_EQ(storedContent(in), storedContent(corpusFile(name)));
    EXPECT_EQ(run({"verify", in}).status, 0);
  }
}

TEST_F(Upgrade, InPlaceKeepsThePermissions) {
  fs::permissions(version1(), fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_exec);
  ASSERT_EQ(run({"upgrade", in}).status, 0);
  EXPECT_EQ(fs::status(in).permissions(),
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_exec);
}

TEST_F(Upgrade, InPlaceThroughALinkReplacesTheFile) {
  fs::create_symlink(version1(), folder.path("link.rdbx"));
  ASSERT_EQ(run({"upgrade", folder.path("link.rdbx")}).status, 0);
  EXPECT_TRUE(fs::is_symlink(folder.path("link.rdbx")));
  EXPECT_EQ(container::Database(in).version(), 2);
}

TEST_F(Upgrade, IntoAnotherFileKeepsTheInput) {
  const std::string before = support::contentOf(version1());
  ASSERT_EQ(run({"upgrade", in, "-o", out}).status, 0);
  EXPECT_EQ(support::contentOf(in), before);
  EXPECT_EQ(storedContent(out), storedContent(in));
  EXPECT_EQ(container::Database(out).version(), 2);
}

TEST_F(Upgrade, OfVersion2HasNothingToDo) {
  const std::string before = support::contentOf(scan({"--encoding", "lz4"}));
  const std::string text = in + ": expected a file of version 1, found version 2";
  const support::Run result = run({"upgrade", in});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, text + "; unchanged\n");
  EXPECT_EQ(support::contentOf(in), before);
  expectRefused(run({"upgrade", in, "-o", out}), 1, text + "; use recode to write a copy");
}

TEST_F(Upgrade, OfADamagedBlockKeepsTheFile) {
  run({"damage", version1(), "--attribute", "int32", "--block", "1", "--flip-byte", "0"});
  const std::string before = support::contentOf(in);
  const support::Run result = run({"upgrade", in});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err,
              StartsWith("rdbtool: the database is damaged: column \"int32\" of " + in + ", block 1: "));
  EXPECT_EQ(support::contentOf(in), before);
  EXPECT_EQ(std::distance(begin(fs::directory_iterator(folder.root())), {}), 1)
      << "something was left behind";
}

} // namespace
