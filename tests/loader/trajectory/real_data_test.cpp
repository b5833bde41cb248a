// SPDX-License-Identifier: BSD-3-Clause
// Loads a real flight and the points scanned from it; without the files it skips with a message.
#include <rdb2nimbra/client.h>

#include "tests/loader/trajectory/flight.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>

namespace {

using namespace flight;

class RealFlight : public Load {
 protected:
  void SetUp() override {
    if (!filesArePresent()) {
      GTEST_SKIP() << "no real data in " << data << ": the load of a real flight is NOT checked";
    }
  }
  bool filesArePresent() const {
    return std::filesystem::exists(data + "/leeward.sbet") &&
           std::filesystem::exists(data + "/leeward-points.las");
  }
  void import(const std::string& file, const std::string& output) const {
    const std::string command = std::string("'") + RDBTOOL_PROGRAM + "' import '" + data + "/" + file +
                                "' -o '" + output + "' > '" + directory.path("log") + "' 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
  }

  struct Points {
    std::vector<double> xyz, time;
  };
  static Points readPoints(const std::string& file) {
    using riegl::rdb::pointcloud::DataType;
    riegl::rdb::Pointcloud database(riegl::rdb::Context("", ""));
    database.open(file, riegl::rdb::pointcloud::OpenSettings());
    auto query = database.select("");
    constexpr unsigned int most = 1000000;
    Points points{std::vector<double>(3 * most), std::vector<double>(most)};
    query.bind("riegl.xyz", DataType(10), points.xyz.data(), 0);
    query.bind("riegl.timestamp", DataType(10), points.time.data(), 0);
    const unsigned int count = query.next(most);
    points.xyz.resize(3 * static_cast<std::size_t>(count));
    points.time.resize(count);
    return points;
  }

  /// Horizontal and vertical distance of each point from the platform at the time of the point.
  struct Distance {
    double across, below;
  };
  static std::vector<Distance> distances(const Points& points, const std::vector<double>& times,
                                         const std::vector<Point>& path) {
    std::vector<Distance> found;
    for (std::size_t i = 0; i < points.time.size(); ++i) {
      const auto after = std::lower_bound(times.begin(), times.end(), points.time[i]);
      if (after == times.begin() || after == times.end()) {
        continue;
      }
      const Point& platform = path[static_cast<std::size_t>(after - times.begin())];
      found.push_back({std::hypot(points.xyz[3 * i] - platform[0], points.xyz[3 * i + 1] - platform[1]),
                       platform[2] - points.xyz[3 * i + 2]});
    }
    return found;
  }

  /// All points lie below the platform, at most 45 degrees off the vertical.
  static void expectBelowThePlatform(const std::vector<Distance>& found) {
    ASSERT_FALSE(found.empty());
    const auto [nearest, farthest] = std::ranges::minmax_element(found, {}, &Distance::across);
    const auto [lowest, highest] = std::ranges::minmax_element(found, {}, &Distance::below);
    std::printf("%zu points; across %.1f to %.1f m; platform %.1f to %.1f m above\n", found.size(),
                nearest->across, farthest->across, lowest->below, highest->below);
    EXPECT_GT(lowest->below, 0) << "a point above the platform";
    EXPECT_LT(farthest->across, lowest->below) << "a point more than 45 degrees off the vertical";
  }

  const std::string data = RDB2NIMBRA_TEST_DATA;
};

TEST_F(RealFlight, PassesOverItsPoints) {
  import("leeward.sbet", path);
  import("leeward-points.las", directory.path("points.rdbx"));
  epsg = 32611;
  ASSERT_EQ(load(), "");
  const std::vector<double> times = values("GPSTime", "flight_Fragment_0");
  ASSERT_TRUE(std::is_sorted(times.begin(), times.end()));
  const Points points = readPoints(directory.path("points.rdbx"));
  const auto found = distances(points, times, positions("flight_Fragment_0"));
  EXPECT_EQ(found.size(), points.time.size()) << "points outside the flight's time";
  expectBelowThePlatform(found);
}

} // namespace
