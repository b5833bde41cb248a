// SPDX-License-Identifier: BSD-3-Clause
// Geocentric coordinates of imported positions, computed by PROJ.
#pragma once

#include <array>
#include <memory>

struct PJconsts;
struct pj_ctx;

namespace rdbtool {

/// Converts positions on the WGS 84 ellipsoid to geocentric coordinates.
///
/// \threads one thread per object
class GeocentricConversion {
 public:
  /// \errors ToolError (failed) where PROJ cannot set the conversion up
  GeocentricConversion();

  /// Metres; x towards longitude 0 on the equator, z towards the north pole.
  ///
  /// \param longitude  radians
  /// \param latitude   radians
  /// \param height     above the ellipsoid, metres
  std::array<double, 3> operator()(double longitude, double latitude, double height) const;

 private:
  struct Destroy {
    void operator()(pj_ctx* context) const;
    void operator()(PJconsts* conversion) const;
  };
  std::unique_ptr<pj_ctx, Destroy> context;
  std::unique_ptr<PJconsts, Destroy> conversion;
};

} // namespace rdbtool
