// SPDX-License-Identifier: BSD-3-Clause
// Pins positions: order of coordinates, projection, points that cannot be transformed, unknown codes.
#include "model/torvel/objects/environment.h"
#include "platform/transformation/transform.h"
#include "tests/loader/trajectory/flight.h"

#include <cmath>
#include <limits>

namespace {

using namespace flight;
using testing::HasSubstr;

std::vector<Point> projected(const std::string& code, unsigned int count) {
  std::vector<Point> points;
  for (unsigned int i = 0; i < count; ++i) {
    points.emplace_back(longitudeOf(i), latitudeOf(i), heightOf(i));
  }
  EXPECT_EQ(Proj::transform("+proj=latlong", code, points, false), "");
  return points;
}

TEST_F(Load, PutsLongitudeLatitudeAndHeightIntoAPoint) {
  givenFlight(3);
  ASSERT_EQ(load(), "");
  const std::vector<Point> points = positions("flight_Fragment_0");
  ASSERT_EQ(points.size(), 3U);
  EXPECT_NEAR(points[2][0], longitudeOf(2), 1e-9);
  EXPECT_NEAR(points[2][1], latitudeOf(2), 1e-9);
  EXPECT_EQ(points[2][2], heightOf(2));
}

TEST_F(Load, ProjectsPositions) {
  for (const int code : {32633, 25833, 3857, 4978}) {
    epsg = code;
    givenFlight(5);
    ASSERT_EQ(load(), "");
    EXPECT_EQ(positions("flight_Fragment_0"), projected("epsg:" + std::to_string(code), 5)) << code;
  }
}

TEST_F(Load, SetsTheFolderOfTheProjectionDataWhateverItWas) {
  Torvel::setEnv("PROJ_LIB", "/nowhere", true);
  givenFlight(3);
  EXPECT_EQ(load(), "");
  EXPECT_EQ(Torvel::getEnv("PROJ_LIB"), Torvel::getExecutableDir());
}

TEST_F(Load, IsNotEndedByAPositionThatIsNoNumber) {
  std::vector<support::Column> spoilt = columns();
  spoilt[5].value = [](std::uint64_t record, unsigned int) {
    return record == 1 ? std::numeric_limits<double>::quiet_NaN() : latitudeOf(static_cast<double>(record));
  };
  epsg = 32633;
  support::writeDatabase(path, 3, spoilt);
  ASSERT_EQ(load(), "");
  const std::vector<Point> points = positions("flight_Fragment_0");
  EXPECT_FALSE(std::isfinite(points[1][0]));
  EXPECT_EQ(points[2], projected("epsg:32633", 3)[2]);
}

TEST_F(Load, OfAnUnknownCodeFailsInTheFirstBlock) {
  epsg = 999999;
  givenFlight(3);
  givenLeverArm("leverarm:1:2:3\nmisalignment:4:5:6\n");
  EXPECT_EQ(load(),
            "convertPOFtoZ4: Coordinate Transformation failed: fromProjStr:+proj=latlong to epsg:999999 "
            "with Error: proj_create: crs not found");
  expectEveryFieldToHave({});
  EXPECT_TRUE(grid.attributes().empty());
}

TEST_F(Load, OfANegativeCodeNamesItWithItsSign) {
  epsg = -7;
  givenFlight(3);
  EXPECT_THAT(load(), HasSubstr("fromProjStr:+proj=latlong to epsg:-7 with Error: "));
}

TEST_F(Load, OfAnUnknownCodeSucceedsWithoutABlock) {
  epsg = 999999;
  givenFlight(0);
  EXPECT_EQ(load(), "");
}

} // namespace
