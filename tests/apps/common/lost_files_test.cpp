// SPDX-License-Identifier: BSD-3-Clause
// Outputs of both programs when the disk is full, memory runs out or the target is refused: a clear error, and the
// old file is kept.
#include "tests/apps/rdbtool/tool_run.h"
#include "tests/support/file_content.h"
#include "tests/support/permissions.h"
#include "tests/support/temp_dir.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

class Outputs : public testing::Test {
 protected:
  Outputs() { tool("synth scan --records 2000 --seed 1 -o " + cloud); }
  /// Runs a shell line.
  support::Run shell(const std::string& line) const {
    return support::runProgram("/bin/sh", {"-c", line}, data.root().string());
  }
  support::Run tool(const std::string& arguments, const std::string& before = "") const {
    return shell(before + "'" TOOL_PROGRAM "' " + arguments);
  }
  support::Run draw(const std::string& picture, const std::string& before = "",
                    const std::string& more = "") const {
    return shell(before + "'" HOST_PROGRAM "' load " + cloud + " --picture " + picture + more);
  }
  std::string givenOld(const std::string& name) const {
    std::ofstream(folder.path(name)) << "old";
    return folder.path(name);
  }
  std::ptrdiff_t filesThere() const {
    return std::distance(fs::directory_iterator(folder.root()), fs::directory_iterator());
  }
  support::TempDir data, folder;
  const std::string cloud = data.path("scan.rdbx");
};

// A limit of 8 blocks of 512 bytes is below the size of each output.
TEST_F(Outputs, APictureBeyondTheFileSizeLimitLeavesTheOldOne) {
  const std::string picture = givenOld("a.png");
  const support::Run run = draw(picture, "ulimit -f 8; ");
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr(": picture not drawn: cannot write " + picture +
                                 ": expected room for the file, found: File too large\n"));
  EXPECT_EQ(support::contentOf(picture), "old");
  EXPECT_EQ(filesThere(), 1);
}

TEST_F(Outputs, ADatabaseBeyondTheFileSizeLimitLeavesTheOldOne) {
  const std::string path = givenOld("a.rdbx");
  const support::Run run = tool("synth scan --records 1000 -o " + path, "ulimit -f 8; ");
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, StartsWith("rdbtool: cannot write the database: "));
  EXPECT_EQ(support::contentOf(path), "old");
  EXPECT_EQ(filesThere(), 1);
}

TEST_F(Outputs, APictureKeepsThePermissionsOfTheOldOne) {
  const std::string picture = givenOld("a.png");
  fs::permissions(picture, fs::perms(0640));
  EXPECT_EQ(draw(picture).status, 0);
  EXPECT_EQ(support::contentOf(picture).substr(1, 3), "PNG");
  EXPECT_EQ(fs::status(picture).permissions(), fs::perms(0640));
}

TEST_F(Outputs, ADatabaseKeepsThePermissionsOfTheOldOne) {
  const std::string path = givenOld("a.rdbx");
  fs::permissions(path, fs::perms(0640));
  EXPECT_EQ(tool("synth scan --records 10 -o " + path).status, 0);
  EXPECT_EQ(tool("verify " + path).status, 0);
  EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
}

TEST_F(Outputs, APictureIsNoPipeAndNoDevice) {
  const std::string pipe = folder.path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  for (const auto& [path, found] : {std::pair{pipe, "a pipe"}, {std::string("/dev/null"), "a device"}}) {
    const support::Run run = draw(path);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, "nimbra-host: --picture: cannot write " + path +
                           ": expected a new or a regular file, found: " + found + "\n");
    EXPECT_EQ(run.out, "");
  }
}

TEST_F(Outputs, AProtectedPictureIsNotReplaced) {
  if (!support::bindStartedProgramsByPermissions()) {
    GTEST_SKIP() << "SKIPPED: permissions do not bind the superuser, and that right cannot be dropped here";
  }
  const std::string picture = givenOld("a.png");
  fs::permissions(picture, fs::perms(0400));
  EXPECT_THAT(draw(picture).err, HasSubstr("cannot write " + picture +
                                           ": expected a file that may be written, "
                                           "found: Permission denied\n"));
  EXPECT_EQ(support::contentOf(picture), "old");
}

TEST_F(Outputs, AProtectedDatabaseIsNotReplaced) {
  if (!support::bindStartedProgramsByPermissions()) {
    GTEST_SKIP() << "SKIPPED: permissions do not bind the superuser, and that right cannot be dropped here";
  }
  const std::string path = givenOld("a.rdbx");
  fs::permissions(path, fs::perms(0400));
  EXPECT_EQ(tool("synth scan --records 10 -o " + path).err,
            "rdbtool: cannot write the database: " + path +
                ": expected a file that may be written, found: Permission denied\n");
  EXPECT_EQ(support::contentOf(path), "old");
}

TEST_F(Outputs, APictureDoesNotReplaceItsInputUnderAnotherPath) {
  fs::create_symlink(cloud, folder.path("link"));
  const support::Run run = draw(folder.path("link"));
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err,
            "nimbra-host: --picture: expected a file other than " + cloud + ", found the same file\n");
}

TEST_F(Outputs, AnInterruptedPictureLeavesTheOldOne) {
  const std::string picture = givenOld("a.png");
  const support::Run run = shell("'" HOST_PROGRAM "' load " + cloud + " --picture " + picture +
                                 " --size 4000x4000 & while kill -0 $! && ! test -e " + picture +
                                 ".*.partial; do :; done; kill $!; wait $!");
  EXPECT_EQ(run.status, 128 + SIGTERM) << run.err;
  EXPECT_THAT(run.err, StartsWith("nimbra-host: interrupted before the picture was written\n"));
  EXPECT_EQ(support::contentOf(picture), "old");
  EXPECT_EQ(filesThere(), 1);
}

TEST_F(Outputs, TheLeverArmFileDoesNotReplaceTheDatabaseUnderAnotherPath) {
  fs::create_symlink("t.pofx", folder.path("link"));
  for (const char* const other : {"./t.pofx", "../{}/t.pofx", "link"}) {
    std::string spelled = other;
    if (const std::size_t place = spelled.find("{}"); place != std::string::npos) {
      spelled.replace(place, 2, folder.root().filename().string());
    }
    const support::Run run = tool("synth trajectory --records 2 -o t.pofx --lever-arm " + spelled,
                                  "cd " + folder.root().string() + "; ");
    EXPECT_EQ(run.status, 2) << spelled;
    EXPECT_EQ(run.err,
              "rdbtool: " + spelled + ": expected an output other than t.pofx, found the same file\n");
  }
  EXPECT_EQ(filesThere(), 1) << "the link alone";
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(Outputs, MemoryThatRunsOutIsOneLine) {
  const std::string picture = givenOld("a.png");
  const support::Run run = draw(picture, "ulimit -v 1000000; ", " --size 16384x16384");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "nimbra-host: out of memory\n");
  EXPECT_EQ(support::contentOf(picture), "old");
}
#endif

} // namespace
