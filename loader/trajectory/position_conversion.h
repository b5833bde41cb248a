// SPDX-License-Identifier: BSD-3-Clause
// Converts the geodetic positions of a block to the coordinate system of the caller.
#pragma once

#include <rdb2nimbra/client.h>

#include "arrays/quillon/physical_space.h"

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace Riegl {

/// Source and target of the conversion, in PROJ's notation.
struct CoordinateSystems {
  std::string fromProjStr; ///< longitude and latitude in degrees, height in metres
  std::string toProjStr;
};

/// Returns both texts, and sets the environment variable PROJ_LIB to the folder of the running program, which
/// has the projection data.
///
/// \param epsgCode  target coordinate system; not checked
/// \threads loads may run at the same time; code outside this project must not read the environment meanwhile
CoordinateSystems prepareConversion(int epsgCode);

/// The buffers for positions: three arrays that the client fills for every block of a load.
///
/// The arrays are zero-filled; a page takes memory once it is written.
/// \errors  std::bad_alloc
class GeodeticPositions {
 public:
  explicit GeodeticPositions(std::size_t recordCount);

  /// Binds latitude, longitude and height, in this order, for all blocks.
  /// \param query  writes to the arrays until it is destroyed
  /// \errors  exceptions of the client
  void bind(riegl::rdb::pointcloud::QuerySelect& query);

  /// Writes (longitude, latitude, height) of the first `count` records to the first `count` points.
  void interleave(std::size_t count, std::vector<Quillon::PhysicalSpace::point>& points) const;

 private:
  struct Release {
    void operator()(double* values) const { std::free(values); } // NOLINT(cppcoreguidelines-no-malloc)
  };
  using Array = std::unique_ptr<double[], Release>;
  static Array makeZeroFilled(std::size_t count);

  Array latitudes;  ///< degrees
  Array longitudes; ///< degrees
  Array heights;    ///< metres above the ellipsoid
};

/// Fills the first `count` points of a column and converts the whole column, in place.
///
/// \param count   records of the block, at most the length of `points`
/// \param points  the column; the points after the first `count` may have any values
/// \return empty, or the text that ends the load
std::string convertPositions(const CoordinateSystems& systems, const GeodeticPositions& positions,
                             std::size_t count, std::vector<Quillon::PhysicalSpace::point>& points);

} // namespace Riegl
