// SPDX-License-Identifier: BSD-3-Clause
// Pins the transformation of single points: order, unit, height, and points that cannot be transformed.
#include "tests/platform/transformation/projection.h"
#include "tests/support/proj_database.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <ostream>

namespace {

using namespace projection;

using Transformation = AsALoadLeavesIt;

TEST_F(Transformation, NeedsNoProjDbBesideTheProgram) {
  const support::ChangedVariable other("PROJ_DATA", "/nowhere");
  EXPECT_FALSE(std::filesystem::exists(Torvel::getExecutableDir() + "/proj.db"))
      << "nothing of the build puts it there; remove one that an older build has left";
  EXPECT_TRUE(std::isfinite(inSystem("epsg:32633", {Point(16, 48, 300)})[0][0]));
}

TEST_F(Transformation, ReadsLongitudeBeforeLatitude) {
  // The central meridian of zone 33 is 15 degrees east: its easting is 500 km by definition, and the equator's
  // northing is 0.
  const Points points = inSystem("epsg:32633", {Point(15, 0, 0), Point(15, 48, 0)});
  expectNear(points[0], 500000, 0, 0, 1e-6);
  EXPECT_NEAR(points[1][0], 500000, 1e-6);
  EXPECT_GT(points[1][1], 5e6);
}

TEST_F(Transformation, CarriesHeightsToSystemsWithoutHeight) {
  EXPECT_EQ(inSystem("epsg:32633", {Point(16, 48, 301.25)})[0][2], 301.25);
  EXPECT_EQ(inSystem("epsg:3857", {Point(16, 48, -12.5)})[0][2], -12.5);
}

TEST_F(Transformation, UsesHeightsInGeocentricSystems) {
  // On the equator's zero meridian the axis is the semi-major one of the ellipsoid.
  const Points points = inSystem("epsg:4978", {Point(0, 0, 0), Point(0, 0, 1000), Point(90, 0, 10)});
  expectNear(points[0], 6378137, 0, 0, 1e-6);
  expectNear(points[1], 6379137, 0, 0, 1e-6);
  expectNear(points[2], 0, 6378147, 0, 1e-6);
}

TEST_F(Transformation, GivesDegreesInTheSameOrderInGeographicSystems) {
  expectNear(inSystem("epsg:4326", {Point(16.5, 48.25, 300)})[0], 16.5, 48.25, 300, 1e-9);
  expectNear(inSystem("epsg:4979", {Point(-16.5, -48.25, 300)})[0], -16.5, -48.25, 300, 1e-9);
}

TEST_F(Transformation, TakesCodesInBothCases) {
  EXPECT_TRUE(
      sameBits(inSystem("epsg:32633", {Point(16, 48, 300)}), inSystem("EPSG:32633", {Point(16, 48, 300)})));
}

TEST_F(Transformation, ChangesItsSystemsFromCallToCall) {
  const Points first = inSystem("epsg:32633", {Point(15, 48, 0)});
  const Points other = inSystem("epsg:32611", {Point(-117, 33, 0)});
  EXPECT_NEAR(other[0][0], 500000, 1e-6);
  EXPECT_TRUE(sameBits(inSystem("epsg:32633", {Point(15, 48, 0)}), first));
}

TEST_F(Transformation, GoesBackToDegrees) {
  Points points = inSystem("epsg:32633", {Point(16, 48, 300)});
  EXPECT_EQ(Proj::transform("epsg:32633", degrees, points, true), "");
  expectNear(points[0], 16, 48, 300, 1e-9);
}

TEST_F(Transformation, LeavesAnEmptyVectorEmpty) {
  Points none;
  EXPECT_EQ(Proj::transform(degrees, "epsg:32633", none, false), "");
  EXPECT_TRUE(none.empty());
}

struct Garbage {
  const char* what;
  double x, y, z;

  friend void PrintTo(const Garbage& test, std::ostream* stream) { *stream << test.what; }
};

const double notANumber = std::numeric_limits<double>::quiet_NaN();
const double signalling = std::bit_cast<double>(std::uint64_t{0x7ff0000000000001});
const double negativeNotANumber = std::bit_cast<double>(std::uint64_t{0xffffffffffffffff});
const double infinite = std::numeric_limits<double>::infinity();

class GarbagePoint : public AsALoadLeavesIt, public testing::WithParamInterface<Garbage> {};

TEST_P(GarbagePoint, EndsNoBatchAndChangesNoOtherPoint) {
  const Point good(16, 48, 300);
  const Point bad(GetParam().x, GetParam().y, GetParam().z);
  for (const char* code : {"epsg:32633", "epsg:4978", "epsg:3857"}) {
    const Points expected = inSystem(code, {good});
    const Points points = inSystem(code, {good, bad, good, bad, bad, good});
    EXPECT_TRUE(points[0] == expected[0] && points[2] == expected[0] && points[5] == expected[0]);
    EXPECT_FALSE(std::isfinite(points[1][0])) << GetParam().what << " in " << code;
    EXPECT_EQ(std::memcmp(&points[3], &points[4], sizeof(Point)), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Transformation, GarbagePoint,
                         testing::Values(Garbage{"not a number", notANumber, notANumber, notANumber},
                                         Garbage{"signalling", signalling, signalling, signalling},
                                         Garbage{"all bits", negativeNotANumber, negativeNotANumber, 0},
                                         Garbage{"infinite", infinite, 0, 0},
                                         Garbage{"minus infinite", 16, -infinite, 0},
                                         Garbage{"huge", 1e300, 1e300, 1e300}),
                         [](const auto& row) {
                           std::string name = row.param.what;
                           std::erase(name, ' ');
                           return name;
                         });

TEST_P(GarbagePoint, PrintsNothing) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  Points points{Point(GetParam().x, GetParam().y, GetParam().z), Point(16, 48, 300)};
  for (const char* code : {"epsg:32633", "epsg:31468", "epsg:999999", ""}) {
    Proj::transform(degrees, code, points, false);
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr() + testing::internal::GetCapturedStdout(), "");
}

TEST_F(Transformation, TakesDenormalNumbersAsZero) {
  const double tiny = std::numeric_limits<double>::denorm_min();
  expectNear(inSystem("epsg:4978", {Point(tiny, tiny, tiny)})[0], 6378137, 0, 0, 1e-6);
}

TEST_F(Transformation, SaysWhyACodeIsNone) {
  for (const char* code : {"epsg:999999", "epsg:0", "epsg:-5", "epsg:", ""}) {
    Points points{Point(16, 48, 300)};
    EXPECT_EQ(Proj::transform(degrees, code, points, false).substr(0, 12), "proj_create:") << code;
    EXPECT_TRUE(sameBits(points, {Point(16, 48, 300)})) << code;
  }
}

TEST_F(Transformation, GivesTheReasonOfProjForAnUnknownCode) {
  Points points{Point(16, 48, 300)};
  EXPECT_EQ(Proj::transform(degrees, "epsg:999999", points, false), "proj_create: crs not found");
}

TEST_F(Transformation, WorksAfterAFailure) {
  Points points{Point(15, 0, 0)};
  EXPECT_NE(Proj::transform(degrees, "epsg:999999", points, false), "");
  EXPECT_NEAR(inSystem("epsg:32633", points)[0][0], 500000, 1e-6);
}

} // namespace
