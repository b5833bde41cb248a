// SPDX-License-Identifier: BSD-3-Clause
// Pins where PROJ's data are looked for: in PROJ_LIB and nowhere else.
#include "tests/platform/transformation/projection.h"
#include "tests/support/temp_dir.h"

#include <fstream>

namespace {

using namespace projection;

class Surroundings : public BesideTheData {
 protected:
  void TearDown() override {
    unsetenv("PROJ_DATA");
    BesideTheData::TearDown();
  }

  static std::string result() {
    Points points{Point(16, 48, 300)};
    return Proj::transform(degrees, "epsg:32633", points, false);
  }

  support::TempDir empty;
};

TEST_F(Surroundings, MissingDatabaseIsReportedWithThePlace) {
  Torvel::setEnv("PROJ_LIB", empty.root().string(), true);
  EXPECT_EQ(result(), "finding epsg:32633 in PROJ's data: expected proj.db in " + empty.root().string() +
                          " (variable PROJ_LIB), found none there; copy it from PROJ's own data folder");
}

TEST_F(Surroundings, MissingFolderIsReportedWithThePlace) {
  Torvel::setEnv("PROJ_LIB", empty.path("none"), true);
  EXPECT_NE(result().find("expected proj.db in " + empty.path("none")), std::string::npos);
}

TEST_F(Surroundings, DamagedDatabaseIsReported) {
  std::ofstream(empty.path("proj.db")) << "no database";
  Torvel::setEnv("PROJ_LIB", empty.root().string(), true);
  EXPECT_NE(result(), "");
}

TEST_F(Surroundings, OtherVariableOfProjDoesNotLeadAway) {
  Torvel::setEnv("PROJ_DATA", empty.root().string(), true);
  EXPECT_EQ(result(), "");
}

TEST_F(Surroundings, OtherVariableOfProjDoesNotHelpOut) {
  Torvel::setEnv("PROJ_DATA", Torvel::getExecutableDir(), true);
  Torvel::setEnv("PROJ_LIB", empty.root().string(), true);
  EXPECT_NE(result(), "");
}

TEST_F(Surroundings, SeveralFoldersAreSearchedInTurn) {
  Torvel::setEnv("PROJ_LIB", empty.root().string() + ":" + Torvel::getExecutableDir(), true);
  EXPECT_EQ(result(), "");
}

TEST_F(Surroundings, FolderWithAColonIsOneFolder) {
  const std::filesystem::path folder = empty.root() / "with:colon";
  std::filesystem::create_directory(folder);
  std::filesystem::copy(Torvel::getExecutableDir() + "/proj.db", folder);
  Torvel::setEnv("PROJ_LIB", folder.string(), true);
  EXPECT_EQ(result(), "");
}

TEST_F(Surroundings, UnsetVariableLeavesTheChoiceToProj) {
  unsetenv("PROJ_LIB");
  Points points{Point(16, 48, 300)};
  EXPECT_EQ(Proj::transform(degrees, "epsg:32632", points, false), "");
}

} // namespace
