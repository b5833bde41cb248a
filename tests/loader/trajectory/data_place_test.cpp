// SPDX-License-Identifier: BSD-3-Clause
// Pins where a load of a program in any folder finds PROJ's data: beside the program, beside the library, in PROJ's own
// folders, in this order.
#include "platform/transformation/transform.h"
#include "tests/loader/trajectory/flight.h"
#include "tests/support/proj_database.h"

#include <cstdio>
#include <filesystem>
#include <ostream>

namespace {

using namespace flight;
namespace fs = std::filesystem;

/// A program in one folder and the libraries beneath it in another, both outside the build.
class InstalledLoad : public Load {
 protected:
  InstalledLoad() {
    fs::create_directories(programs);
    fs::create_directories(libraries);
    fs::copy(LOAD_PROGRAM, programs / "load");
    for (const fs::directory_entry& file : fs::directory_iterator(LIBRARY_FOLDER)) {
      const std::string name = file.path().filename().string();
      if (name.starts_with("librdb2nimbra") && name.ends_with(".so." LIBRARY_MAJOR)) {
        fs::copy(file.path(), libraries / name);
      }
    }
    givenFlight(3);
  }

  /// What the program prints, line by line; `environment` as for the program env.
  std::vector<std::string> run(const std::string& environment) const {
    const std::string output = directory.path("output");
    const std::string command = "env -u XDG_DATA_HOME -u PROJ_DATA HOME=" + directory.path("nobody") + " " +
                                environment + " " + (programs / "load").string() + " " + path + " 32633 > " +
                                output;
    EXPECT_NE(std::system(command.c_str()), -1);
    std::ifstream file(output);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
      lines.push_back(line);
    }
    return lines;
  }

  /// The easting of the flight's first position in a zone 33 whose meridian is at `degrees`.
  static std::string eastingAt(int degrees) {
    std::vector<Point> points{Point(longitudeOf(0), latitudeOf(0), heightOf(0))};
    EXPECT_EQ(Proj::transform("+proj=latlong", support::zone33At(degrees), points, false), "");
    char text[32];
    std::snprintf(text, sizeof text, "%.4f", points[0][0]);
    return text;
  }

  const fs::path programs = directory.root() / "bin";
  const fs::path libraries = directory.root() / "lib";
};

TEST_F(InstalledLoad, FindsTheDatabaseOfProjInAnyFolder) {
  EXPECT_EQ(run(""), (std::vector<std::string>{"", eastingAt(15)}));
}

TEST_F(InstalledLoad, FindsTheDatabaseBesideTheLibrary) {
  support::putProjDatabase(libraries, 14);
  EXPECT_EQ(run(""), (std::vector<std::string>{"", eastingAt(14)}));
}

TEST_F(InstalledLoad, PrefersTheDatabaseBesideTheProgram) {
  support::putProjDatabase(libraries, 14);
  support::putProjDatabase(programs, 13);
  EXPECT_EQ(run(""), (std::vector<std::string>{"", eastingAt(13)}));
}

TEST_F(InstalledLoad, IsNotLedAwayByVariablesOfTheUser) {
  EXPECT_EQ(run("PROJ_LIB=/nowhere PROJ_DATA=/nowhere"), (std::vector<std::string>{"", eastingAt(15)}));
}

TEST_F(InstalledLoad, ReplacesTheUsersFolderByItsOwn) {
  const fs::path users = directory.root() / "users";
  fs::create_directory(users);
  support::putProjDatabase(users, 13);
  EXPECT_EQ(run("PROJ_LIB=" + users.string()), (std::vector<std::string>{"", eastingAt(15)}));
}

TEST_F(InstalledLoad, ReportsThePlacesWhereNoDatabaseIsFound) {
  // A copy of PROJ's library in a folder from which it finds no data.
  fs::create_directory(directory.root() / "proj");
  fs::copy(fs::canonical(PROJ_LIBRARY), directory.root() / "proj" / PROJ_LIBRARY_NAME);
  EXPECT_EQ(
      run("LD_LIBRARY_PATH=" + directory.path("proj")),
      (std::vector<std::string>{
          "convertPOFtoZ4: Coordinate Transformation failed: fromProjStr:+proj=latlong to epsg:32633 with "
          "Error: finding epsg:32633 in PROJ's data: expected proj.db in " +
          programs.string() + " (variable PROJ_LIB), " + libraries.string() +
          " (beside the library) or PROJ's own folders, found none; install PROJ's data"}));
}

} // namespace
