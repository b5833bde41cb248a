// SPDX-License-Identifier: BSD-3-Clause
// The library loads the databases that the tool makes.
#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/apps/rdbtool/database_rows.h"
#include "tests/apps/rdbtool/las_file.h"
#include "tests/apps/rdbtool/tool_run.h"
#include "tests/support/grid.h"
#include "tests/support/temp_dir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using Quillon::PhysicalSpace::point;
using testing::ElementsAre;
using testing::IsSupersetOf;

class ToolLoad : public testing::Test {
 protected:
  std::string make(const std::string& name, std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"-o", folder.path(name)});
    const support::Run run = support::runTool(arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    return folder.path(name);
  }
  std::string imported(support::LasFile file, const std::vector<double>& stamps) {
    for (const double stamp : stamps) {
      support::LasPoint given;
      given.gpsTime = stamp;
      file.with(given);
    }
    return make("import.rdbx", {"import", file.writeTo(folder.path("in.las"))});
  }
  std::string load(const std::string& path) { return Riegl::rdbx2Z4(path, grid, 0, true, {}); }
  std::vector<double> stamps() {
    return support::values<double>(support::field(grid, "GPSTime"), "Fragment_0");
  }

  support::TempDir folder;
  Nimbra::Grid grid;
};

TEST_F(ToolLoad, ASyntheticScanLoadsWithAllItsFields) {
  EXPECT_EQ(load(make("a.rdbx", {"synth", "scan", "--records", "2000"})), "");
  EXPECT_THAT(support::fieldNames(grid), IsSupersetOf({"Positions", "GPSTime", "RGBA", "Classification"}));
  EXPECT_EQ(stamps().size(), 2000U);
}

TEST_F(ToolLoad, SyntheticShotsLoadWithTheirWaveformAttributes) {
  EXPECT_EQ(load(make("a.sodx", {"synth", "shots", "--records", "2000"})), "");
  EXPECT_THAT(support::fieldNames(grid),
              IsSupersetOf({"ShotOrigin", "ShotTimeStamp", "WaveformSampleValue"}));
}

TEST_F(ToolLoad, ShotsWithoutAnItemFailAsTheyShould) {
  EXPECT_EQ(load(make("a.sodx", {"synth", "shots", "--records", "9", "--without", "riegl.waveform_info"})),
            "Error: Key not found");
}

TEST_F(ToolLoad, ASyntheticTrajectoryLoadsToTheOriginsOfTheShots) {
  const support::DatabaseRows shots(make("a.sodx", {"synth", "shots", "--records", "1"}));
  const std::string path =
      make("a.pofx", {"synth", "trajectory", "--records", "9", "--lever-arm", folder.path("arm")});
  EXPECT_EQ(Riegl::pofx2nimbra(path, grid, 32633, {}, folder.path("arm"), {}), "");
  const auto places = support::values<point>(support::field(grid, "Positions"), "a_Fragment_0");
  ASSERT_EQ(places.size(), 9U);
  for (int axis = 0; axis < 3; ++axis) {
    EXPECT_NEAR(places[0][axis], shots.column("riegl.shot_origin")[static_cast<std::size_t>(axis)], 1e-3);
  }
}

TEST_F(ToolLoad, ImportedWeekSecondsStayAsTheyAre) {
  EXPECT_EQ(load(imported({2, 3}, {259210.5, 259300.5})), "");
  EXPECT_THAT(stamps(), ElementsAre(259210.5, 259300.5));
}

TEST_F(ToolLoad, ImportedStampsOnTwoDaysAreRefusedByTheLoad) {
  EXPECT_EQ(load(imported({2, 1}, {86390, 86410})),
            "baseRDB2Nimbra:: Input file spans two days! Not implemented so far.");
}

TEST_F(ToolLoad, EveryImportedFormatLoads) {
  for (unsigned format = 0; format <= 10; ++format) {
    EXPECT_EQ(load(imported({4, format}, {400000})), "") << format;
  }
}

} // namespace
