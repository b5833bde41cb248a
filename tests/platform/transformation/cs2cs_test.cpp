// SPDX-License-Identifier: BSD-3-Clause
// Compares positions with PROJ's own program cs2cs; skips loudly where the program is absent.
#include "tests/platform/transformation/projection.h"
#include "tests/support/temp_dir.h"

#include <cstdio>
#include <fstream>
#include <ostream>
#include <sstream>

namespace {

using namespace projection;

struct Area {
  const char* code;
  double west, east, south, north; ///< degrees

  friend void PrintTo(const Area& area, std::ostream* stream) { *stream << area.code; }
};

Points gridOver(const Area& area) {
  Points points;
  for (int row = 0; row <= 12; ++row) {
    for (int column = 0; column <= 12; ++column) {
      points.emplace_back(area.west + (area.east - area.west) * column / 12,
                          area.south + (area.north - area.south) * row / 12, 37.5 * row - 60.25 * column);
    }
  }
  return points;
}

class Cs2cs : public AsALoadLeavesIt, public testing::WithParamInterface<Area> {
 protected:
  static bool present() { return std::system("cs2cs -lp > /dev/null 2>&1") == 0; }

  Points run(const std::string& code, const Points& points) const {
    std::ofstream file(directory.path("in"));
    file.precision(17);
    for (const Point& point : points) {
      file << point[0] << ' ' << point[1] << ' ' << point[2] << '\n';
    }
    file.close();
    const std::string command = "env -u PROJ_LIB -u PROJ_DATA"
                                " cs2cs -f %.10f +proj=latlong +to " +
                                code + " " + directory.path("in") + " > " + directory.path("out");
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return readPoints(directory.path("out"));
  }

 private:
  static Points readPoints(const std::string& path) {
    std::ifstream file(path);
    Points points;
    for (double x, y, z; file >> x >> y >> z;) {
      points.emplace_back(x, y, z);
    }
    return points;
  }

  support::TempDir directory;
};

TEST_P(Cs2cs, AgreesToAMicrometre) {
  if (!present()) {
    GTEST_SKIP() << "cs2cs (package proj-bin) is not installed: positions are NOT compared with it";
  }
  const Points points = gridOver(GetParam());
  const Points expected = run(GetParam().code, points);
  const Points found = inSystem(GetParam().code, points);
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    SCOPED_TRACE(i);
    expectNear(found[i], expected[i][0], expected[i][1], expected[i][2], 1e-6);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Transformation, Cs2cs,
    testing::Values(Area{"epsg:32633", 12, 18, 0, 84}, Area{"epsg:32611", -120, -114, 0, 84},
                    Area{"epsg:32721", -60, -54, -80, 0}, Area{"epsg:32756", 150, 156, -80, 0},
                    Area{"epsg:25833", 12, 18, 32, 84}, Area{"epsg:3857", -180, 180, -85, 85},
                    Area{"epsg:4978", -180, 180, -90, 90}),
    [](const auto& row) { return std::string(row.param.code).substr(5); });

} // namespace
