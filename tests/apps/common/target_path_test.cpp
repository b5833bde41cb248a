// SPDX-License-Identifier: BSD-3-Clause
// Paths that lead to the same file, whether it exists or not.
#include "apps/common/target_path.h"

#include "container/write/replacing_file.h"
#include "tests/support/temp_dir.h"

#include <fstream>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

class TargetPath : public testing::Test {
 protected:
  TargetPath() {
    fs::create_directory(folder.path("below"));
    std::ofstream(folder.path("file")) << "content";
    fs::create_hard_link(folder.path("file"), folder.path("hard"));
    fs::create_symlink("file", folder.path("link"));
    fs::create_symlink("below/../absent", folder.path("dangling"));
    fs::create_symlink("dangling", folder.path("chain"));
    fs::create_symlink("circle", folder.path("circle"));
    fs::create_directory_symlink("below", folder.path("beside"));
  }
  bool same(const std::string& one, const std::string& other) const {
    return apps::sameFile(folder.path(one), folder.path(other)) &&
           apps::sameFile(folder.path(other), folder.path(one));
  }
  support::TempDir folder;
};

TEST_F(TargetPath, IsTheSameHoweverItIsWritten) {
  for (const auto& [one, other] :
       std::initializer_list<std::pair<const char*, const char*>>{{"file", "./file"},
                                                                  {"file", "below/../file"},
                                                                  {"file", "link"},
                                                                  {"file", "hard"},
                                                                  {"absent", "./absent"},
                                                                  {"absent", "below//..//absent"},
                                                                  {"absent", "dangling"},
                                                                  {"absent", "chain"},
                                                                  {"below/absent", "beside/absent"},
                                                                  {"none/absent", "none/./absent"},
                                                                  {"circle", "./circle"}}) {
    EXPECT_TRUE(same(one, other)) << one << " " << other;
  }
}

TEST_F(TargetPath, IsAnotherForAnotherFile) {
  for (const auto& [one, other] : std::initializer_list<std::pair<const char*, const char*>>{
           {"file", "absent"}, {"file", "below/file"}, {"absent", "below/absent"}, {"link", "dangling"}}) {
    EXPECT_FALSE(same(one, other)) << one << " " << other;
  }
}

TEST_F(TargetPath, RelativeAndAbsolutePathsMeet) {
  const fs::path before = fs::current_path();
  fs::current_path(folder.root());
  const bool met = apps::sameFile("absent", folder.path("absent"));
  fs::current_path(before);
  EXPECT_TRUE(met);
}

TEST_F(TargetPath, LinksAreFollowedToTheEnd) {
  std::error_code problem;
  EXPECT_EQ(fs::path(container::followLinks(folder.path("chain"), problem)).lexically_normal(),
            folder.path("absent"));
  EXPECT_FALSE(problem);
  container::followLinks(folder.path("circle"), problem);
  EXPECT_EQ(problem, std::errc::too_many_symbolic_link_levels);
}

} // namespace
