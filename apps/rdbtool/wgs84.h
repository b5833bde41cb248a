// SPDX-License-Identifier: BSD-3-Clause
// Positions on the WGS 84 ellipsoid: geocentric, and in a zone of the universal transverse Mercator grid. Only
// `synth` uses them, because its bytes must not depend on the version of a library.
#pragma once

#include <array>

namespace rdbtool {

using Vector3 = std::array<double, 3>;

constexpr double degreesPerRadian = 57.295779513082320876798;

/// Longitude and latitude in radians, height above the ellipsoid in metres.
struct GeodeticPosition {
  double longitude = 0;
  double latitude = 0;
  double height = 0;
};

/// Easting and northing in metres.
struct GridPosition {
  double east = 0;
  double north = 0;
};

/// Geocentric coordinates, metres: x towards longitude 0 on the equator, z towards the north pole.
Vector3 geocentric(const GeodeticPosition& position);

/// The straight distance between two geocentric positions, metres.
double chord(const Vector3& from, const Vector3& to);

/// A northern zone of the universal transverse Mercator grid, by the series of Krueger to the fourth order of
/// the third flattening: better than a tenth of a millimetre within ten degrees of the central meridian.
///
/// \threads safe
class TransverseMercatorZone {
 public:
  /// \param number  1 to 60; zone 33 is EPSG 32633
  explicit TransverseMercatorZone(int number);

  /// The grid position of a longitude and a latitude in radians.
  GridPosition project(double longitude, double latitude) const;
  /// Longitude and latitude in radians; the height is 0.
  GeodeticPosition unproject(const GridPosition& grid) const;

  /// Local properties of the grid.
  struct Local {
    double scale = 1;       // grid metres per metre on the ellipsoid
    double convergence = 0; // azimuth of grid north, radians clockwise from true north
  };
  /// The scale and the convergence at a position of the zone.
  Local around(const GridPosition& grid) const;

 private:
  double centralMeridian;
};

} // namespace rdbtool
