// SPDX-License-Identifier: BSD-3-Clause
// Positions on the WGS 84 ellipsoid: geocentric, and in a zone of the universal transverse Mercator grid.
#include "apps/rdbtool/wgs84.h"

#include <cmath>

namespace rdbtool {

namespace {

constexpr double semiMajorAxis = 6378137.0;
constexpr double flattening = 1 / 298.257223563;
constexpr double eccentricitySquared = flattening * (2 - flattening);
constexpr double zoneScale = 0.9996;
constexpr double falseEasting = 500000.0;

// The third flattening, its powers, and the series in them.
constexpr double n1 = flattening / (2 - flattening);
constexpr double n2 = n1 * n1;
constexpr double n3 = n2 * n1;
constexpr double n4 = n2 * n2;
constexpr double rectifyingRadius = semiMajorAxis / (1 + n1) * (1 + n2 / 4 + n4 / 64);
constexpr double forward[4] = {n1 / 2 - n2 * 2 / 3 + n3 * 5 / 16 + n4 * 41 / 180,
                               n2 * 13 / 48 - n3 * 3 / 5 + n4 * 557 / 1440, n3 * 61 / 240 - n4 * 103 / 140,
                               n4 * 49561 / 161280};
constexpr double backward[4] = {n1 / 2 - n2 * 2 / 3 + n3 * 37 / 96 - n4 / 360,
                                n2 / 48 + n3 / 15 - n4 * 437 / 1440, n3 * 17 / 480 - n4 * 37 / 840,
                                n4 * 4397 / 161280};
constexpr double latitudeSeries[4] = {n1 * 2 - n2 * 2 / 3 - n3 * 2 + n4 * 116 / 45,
                                      n2 * 7 / 3 - n3 * 8 / 5 - n4 * 227 / 45, n3 * 56 / 15 - n4 * 136 / 35,
                                      n4 * 4279 / 630};

/// Radius of curvature along the meridian.
double meridianRadius(double latitude) {
  const double sine = std::sin(latitude);
  const double root = std::sqrt(1 - eccentricitySquared * sine * sine);
  return semiMajorAxis * (1 - eccentricitySquared) / (root * root * root);
}

/// Radius of curvature across the meridian.
double primeVerticalRadius(double latitude) {
  const double sine = std::sin(latitude);
  return semiMajorAxis / std::sqrt(1 - eccentricitySquared * sine * sine);
}

} // namespace

Vector3 geocentric(const GeodeticPosition& position) {
  const double radius = primeVerticalRadius(position.latitude);
  const double fromAxis = (radius + position.height) * std::cos(position.latitude);
  return {fromAxis * std::cos(position.longitude), fromAxis * std::sin(position.longitude),
          (radius * (1 - eccentricitySquared) + position.height) * std::sin(position.latitude)};
}

double chord(const Vector3& from, const Vector3& to) {
  return std::hypot(to[0] - from[0], to[1] - from[1], to[2] - from[2]);
}

TransverseMercatorZone::TransverseMercatorZone(int number)
    : centralMeridian((number * 6 - 183) / degreesPerRadian) {}

GridPosition TransverseMercatorZone::project(double longitude, double latitude) const {
  const double root = 2 * std::sqrt(n1) / (1 + n1);
  const double sine = std::sin(latitude);
  const double conformal = std::sinh(std::atanh(sine) - root * std::atanh(root * sine));
  const double delta = longitude - centralMeridian;
  const double xi = std::atan2(conformal, std::cos(delta));
  const double eta = std::asinh(std::sin(delta) / std::hypot(conformal, std::cos(delta)));
  double east = eta;
  double north = xi;
  for (int order = 1; order <= 4; ++order) {
    east += forward[order - 1] * std::cos(2 * order * xi) * std::sinh(2 * order * eta);
    north += forward[order - 1] * std::sin(2 * order * xi) * std::cosh(2 * order * eta);
  }
  return {falseEasting + zoneScale * rectifyingRadius * east, zoneScale * rectifyingRadius * north};
}

GeodeticPosition TransverseMercatorZone::unproject(const GridPosition& grid) const {
  const double xi = grid.north / (zoneScale * rectifyingRadius);
  const double eta = (grid.east - falseEasting) / (zoneScale * rectifyingRadius);
  double xiSphere = xi;
  double etaSphere = eta;
  for (int order = 1; order <= 4; ++order) {
    xiSphere -= backward[order - 1] * std::sin(2 * order * xi) * std::cosh(2 * order * eta);
    etaSphere -= backward[order - 1] * std::cos(2 * order * xi) * std::sinh(2 * order * eta);
  }
  const double conformal = std::asin(std::sin(xiSphere) / std::cosh(etaSphere));
  GeodeticPosition position;
  position.latitude = conformal;
  for (int order = 1; order <= 4; ++order) {
    position.latitude += latitudeSeries[order - 1] * std::sin(2 * order * conformal);
  }
  position.longitude = centralMeridian + std::atan2(std::sinh(etaSphere), std::cos(xiSphere));
  return position;
}

TransverseMercatorZone::Local TransverseMercatorZone::around(const GridPosition& grid) const {
  constexpr double halfStep = 50;
  const GeodeticPosition south = unproject({grid.east, grid.north - halfStep});
  const GeodeticPosition north = unproject({grid.east, grid.north + halfStep});
  const double middle = (south.latitude + north.latitude) / 2;
  const double alongMeridian = (north.latitude - south.latitude) * meridianRadius(middle);
  const double acrossMeridian =
      (north.longitude - south.longitude) * primeVerticalRadius(middle) * std::cos(middle);
  return {2 * halfStep / std::hypot(alongMeridian, acrossMeridian),
          std::atan2(acrossMeridian, alongMeridian)};
}

} // namespace rdbtool
