// SPDX-License-Identifier: BSD-3-Clause
// An output is the old file or the complete new one, and only regular files are replaced.
#include "apps/common/output_file.h"

#include "tests/support/file_content.h"
#include "tests/support/resource_limit.h"
#include "tests/support/temp_dir.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using apps::OutputFile;
using support::contentOf;

class Output : public testing::Test {
 protected:
  std::string givenFile(const std::string& name, fs::perms permissions = fs::perms(0644)) const {
    std::ofstream(folder.path(name)) << "old";
    fs::permissions(folder.path(name), permissions);
    return folder.path(name);
  }
  static void writeTo(const std::string& path) {
    OutputFile file(path);
    file.write("new");
    file.putInPlace();
  }
  /// The error text of a refused output; empty if it is accepted.
  static std::string refusalOf(const std::string& path) {
    try {
      writeTo(path);
    } catch (const apps::OutputError& error) {
      return error.what();
    }
    return {};
  }
  std::ptrdiff_t filesThere() const {
    return std::distance(fs::directory_iterator(folder.root()), fs::directory_iterator());
  }
  support::TempDir folder;
};

TEST_F(Output, TakesItsNameWhenItIsComplete) {
  const std::string path = folder.path("out");
  OutputFile file(path);
  file.write("one ");
  file.write("two");
  EXPECT_FALSE(fs::exists(path));
  file.putInPlace();
  EXPECT_EQ(contentOf(path), "one two");
  EXPECT_EQ(filesThere(), 1);
}

TEST_F(Output, ANewFileHasThePermissionsOfAnyNewFile) {
  const mode_t mask = ::umask(027);
  writeTo(folder.path("out"));
  ::umask(mask);
  EXPECT_EQ(fs::status(folder.path("out")).permissions(), fs::perms(0640));
}

TEST_F(Output, AReplacedFilePassesOnItsPermissions) {
  for (const unsigned permissions : {0640U, 0600U, 0666U, 0755U}) {
    const std::string path = givenFile("out", fs::perms(permissions));
    writeTo(path);
    EXPECT_EQ(contentOf(path), "new");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(permissions));
  }
}

TEST_F(Output, AReplacedFilePassesOnItsOwner) {
  if (::geteuid() != 0) {
    GTEST_SKIP() << "SKIPPED: only the superuser may give files away";
  }
  const std::string path = givenFile("out");
  ASSERT_EQ(::chown(path.c_str(), 1234, 5678), 0);
  writeTo(path);
  struct stat status {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 1234U);
  EXPECT_EQ(status.st_gid, 5678U);
}

TEST_F(Output, AnAbandonedFileLeavesTheOldOneAndNothingElse) {
  const std::string path = givenFile("out");
  { OutputFile(path).write("new"); }
  EXPECT_EQ(contentOf(path), "old");
  EXPECT_EQ(filesThere(), 1);
}

TEST_F(Output, AKilledWriterLeavesTheOldFile) {
  const std::string path = givenFile("out");
  const pid_t child = ::fork();
  if (child == 0) {
    OutputFile file(path);
    file.write("new");
    std::raise(SIGKILL);
  }
  int state = 0;
  ASSERT_EQ(::waitpid(child, &state, 0), child);
  EXPECT_TRUE(WIFSIGNALED(state));
  EXPECT_EQ(filesThere(), 2) << "the temporary file stands beside it";
  EXPECT_EQ(contentOf(path), "old");
}

TEST_F(Output, AFileThatBecomesTooLargeLeavesTheOldOne) {
  const std::string path = givenFile("out");
  std::signal(SIGXFSZ, SIG_IGN);
  const support::ResourceLimit limit(RLIMIT_FSIZE, 2);
  EXPECT_EQ(refusalOf(path), "cannot write " + path + ": expected room for the file, found: File too large");
  EXPECT_EQ(contentOf(path), "old");
  EXPECT_EQ(filesThere(), 1);
}

TEST_F(Output, SymbolicLinksAreFollowed) {
  const std::string path = givenFile("out");
  for (const char* const name : {"out", "absent"}) {
    fs::create_symlink(name, folder.path("link"));
    writeTo(folder.path("link"));
    EXPECT_TRUE(fs::is_symlink(folder.path("link")));
    EXPECT_EQ(contentOf(folder.path(name)), "new");
    fs::remove(folder.path("link"));
  }
}

TEST_F(Output, ALongNameIsAsGoodAsAShortOne) {
  const std::string path = folder.path(std::string(255, 'n'));
  writeTo(path);
  EXPECT_EQ(contentOf(path), "new");
}

TEST_F(Output, OnlyRegularFilesAreReplaced) {
  ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
  ASSERT_EQ(::mknod(folder.path("socket").c_str(), S_IFSOCK | 0600, 0), 0);
  fs::create_symlink("/dev/null", folder.path("null"));
  for (const auto& [path, found] : {std::pair{folder.root().string(), "a directory"},
                                    {folder.path("pipe"), "a pipe"},
                                    {folder.path("socket"), "a socket"},
                                    {std::string("/dev/full"), "a device"},
                                    {folder.path("null"), "a device"}}) {
    EXPECT_EQ(refusalOf(path),
              "cannot write " + path + ": expected a new or a regular file, found: " + found);
  }
  EXPECT_TRUE(fs::is_fifo(folder.path("pipe")));
}

TEST_F(Output, APlaceThatTakesNoFileIsRefused) {
  const std::string missing = folder.path("none/out");
  EXPECT_EQ(refusalOf(missing),
            "cannot write " + missing +
                ": expected a directory that takes a new file, found: No such file or directory");
  EXPECT_EQ(refusalOf(""), "cannot write \"\": expected the path of a file, found: an empty text");
  fs::create_symlink("circle", folder.path("circle"));
  EXPECT_EQ(refusalOf(folder.path("circle")),
            "cannot write " + folder.path("circle") +
                ": expected a path that can be followed, found: Too many levels of "
                "symbolic links");
}

} // namespace
