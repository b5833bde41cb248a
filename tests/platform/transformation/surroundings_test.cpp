// SPDX-License-Identifier: BSD-3-Clause
// Pins where PROJ's data are looked for: in PROJ_LIB first, and in PROJ's own folders where there are none.
// The folder of the library is tried by tests/loader/trajectory/data_place_test.cpp.
#include "tests/platform/transformation/projection.h"
#include "tests/support/proj_database.h"
#include "tests/support/temp_dir.h"

#include <fstream>

namespace {

using namespace projection;

class Surroundings : public AsALoadLeavesIt {
 protected:
  static std::string result() {
    Points points{Point(16, 48, 300)};
    return Proj::transform(degrees, "epsg:32633", points, false);
  }

  /// Expects the transformation to take a database whose zone 33 has this meridian.
  static void expectMeridian(int meridian) {
    const Point expected = inSystem(support::zone33At(meridian), {Point(16, 48, 300)})[0];
    expectNear(inSystem("epsg:32633", {Point(16, 48, 300)})[0], expected[0], expected[1], expected[2], 1e-6);
  }

  support::TempDir folder;
  const support::ChangedVariable other{"PROJ_DATA", std::nullopt};
};

TEST_F(Surroundings, FolderWithoutADatabaseLeavesTheInstalledOne) {
  Torvel::setEnv("PROJ_LIB", folder.root().string(), true);
  expectMeridian(15);
}

TEST_F(Surroundings, AbsentFolderLeavesTheInstalledDatabase) {
  Torvel::setEnv("PROJ_LIB", folder.path("none"), true);
  expectMeridian(15);
}

TEST_F(Surroundings, DatabaseInTheNamedFolderWins) {
  support::putProjDatabase(folder.root(), 14);
  Torvel::setEnv("PROJ_LIB", folder.root().string(), true);
  expectMeridian(14);
}

TEST_F(Surroundings, DamagedDatabaseIsReported) {
  std::ofstream(folder.path("proj.db")) << "no database";
  Torvel::setEnv("PROJ_LIB", folder.root().string(), true);
  EXPECT_NE(result(), "");
  EXPECT_EQ(result().find("expected proj.db in"), std::string::npos) << result();
}

TEST_F(Surroundings, OtherVariableOfProjDoesNotLeadAway) {
  const support::ChangedVariable away("PROJ_DATA", folder.root().string());
  EXPECT_EQ(result(), "");
}

TEST_F(Surroundings, OtherVariableOfProjComesBehindTheNamedFolder) {
  support::TempDir named;
  support::putProjDatabase(folder.root(), 14);
  const support::ChangedVariable second("PROJ_DATA", folder.root().string());
  Torvel::setEnv("PROJ_LIB", named.root().string(), true);
  expectMeridian(14);
  support::putProjDatabase(named.root(), 13);
  Torvel::setEnv("PROJ_LIB", named.root().string() + "/", true); // another value: looked up anew
  expectMeridian(13);
}

TEST_F(Surroundings, SeveralFoldersAreSearchedInTurn) {
  support::TempDir second;
  support::putProjDatabase(second.root(), 14);
  Torvel::setEnv("PROJ_LIB", folder.root().string() + ":" + second.root().string(), true);
  expectMeridian(14);
}

TEST_F(Surroundings, FolderWithAColonIsOneFolder) {
  const std::filesystem::path named = folder.root() / "with:colon";
  std::filesystem::create_directory(named);
  support::putProjDatabase(named, 14);
  Torvel::setEnv("PROJ_LIB", named.string(), true);
  expectMeridian(14);
}

TEST_F(Surroundings, UnsetVariableLeavesTheChoiceToProj) {
  unsetenv("PROJ_LIB");
  Points points{Point(16, 48, 300)};
  EXPECT_EQ(Proj::transform(degrees, "epsg:32632", points, false), "");
}

} // namespace
