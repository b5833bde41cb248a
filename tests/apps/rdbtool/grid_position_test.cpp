// SPDX-License-Identifier: BSD-3-Clause
// The tool's own transverse Mercator series against PROJ, and its radii against known values.
#include "apps/rdbtool/wgs84.h"

#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <proj.h>

namespace {

using rdbtool::degreesPerRadian;

/// PROJ's own projection from geographic degrees, which needs no database.
class Reference {
 public:
  Reference() : projection(proj_create(nullptr, "+proj=utm +zone=33 +ellps=WGS84"), &proj_destroy) {}
  PJ_COORD project(double longitude, double latitude) const {
    return proj_trans(projection.get(), PJ_FWD, proj_coord(longitude, latitude, 0, 0));
  }

 private:
  std::unique_ptr<PJ, PJ* (*)(PJ*)> projection;
};

constexpr double longitudes[] = {9, 12, 14.5, 15, 17.25, 21};
constexpr double latitudes[] = {0.5, 25, 47.5, 50.139, 72, 83};

template <typename Check>
void forEachPosition(const Check& check) {
  for (const double longitude : longitudes) {
    for (const double latitude : latitudes) {
      check(longitude / degreesPerRadian, latitude / degreesPerRadian);
    }
  }
}

TEST(GridPosition, AgreesWithProjToATenthOfAMillimetre) {
  const Reference reference;
  const rdbtool::TransverseMercatorZone zone(33);
  forEachPosition([&](double longitude, double latitude) {
    const PJ_COORD expected = reference.project(longitude, latitude);
    const rdbtool::GridPosition grid = zone.project(longitude, latitude);
    EXPECT_NEAR(grid.east, expected.xy.x, 1e-4) << longitude << " " << latitude;
    EXPECT_NEAR(grid.north, expected.xy.y, 1e-4) << longitude << " " << latitude;
  });
}

TEST(GridPosition, ComesBackToTheSamePlace) {
  const rdbtool::TransverseMercatorZone zone(33);
  forEachPosition([&](double longitude, double latitude) {
    const rdbtool::GeodeticPosition back = zone.unproject(zone.project(longitude, latitude));
    EXPECT_NEAR(back.longitude, longitude, 2e-11) << longitude << " " << latitude;
    EXPECT_NEAR(back.latitude, latitude, 2e-11) << longitude << " " << latitude;
  });
}

TEST(GridPosition, ScaleAndConvergenceAgreeWithProj) {
  const std::unique_ptr<PJ, PJ* (*)(PJ*)> projection(proj_create(nullptr, "+proj=utm +zone=33 +ellps=WGS84"),
                                                     &proj_destroy);
  const rdbtool::TransverseMercatorZone zone(33);
  const double longitude = 14 / degreesPerRadian, latitude = 50 / degreesPerRadian;
  const PJ_FACTORS factors = proj_factors(projection.get(), proj_coord(longitude, latitude, 0, 0));
  const auto local = zone.around(zone.project(longitude, latitude));
  EXPECT_NEAR(local.scale, factors.meridional_scale, 1e-8);
  // West of the central meridian grid north leans to the west of true north.
  EXPECT_NEAR(local.convergence, -std::sin(latitude) / degreesPerRadian, 1e-5);
  EXPECT_NEAR(std::abs(local.convergence), std::abs(factors.meridian_convergence), 1e-8);
}

TEST(GeocentricPosition, LiesOnTheEllipsoid) {
  const rdbtool::Vector3 equator = rdbtool::geocentric({0, 0, 10});
  EXPECT_NEAR(equator[0], 6378147, 1e-9);
  const rdbtool::Vector3 pole = rdbtool::geocentric({0, std::asin(1.0), 10});
  EXPECT_NEAR(pole[2], 6356762.314245179, 1e-8);
}

} // namespace
