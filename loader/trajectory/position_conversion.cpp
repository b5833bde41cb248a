// SPDX-License-Identifier: BSD-3-Clause
// Interleaves the three columns of a position and transforms the points.
#include "loader/trajectory/position_conversion.h"

#include "loader/trajectory/bind_attribute.h"
#include "loader/trajectory/projection.h"
#include "model/torvel/objects/environment.h"

#include <new>

namespace Riegl {

CoordinateSystems prepareConversion(int epsgCode) {
  CoordinateSystems systems{"+proj=latlong", "epsg:" + std::to_string(epsgCode)};
  Torvel::setEnv("PROJ_LIB", Torvel::getExecutableDir(), true);
  return systems;
}

GeodeticPositions::Array GeodeticPositions::makeZeroFilled(std::size_t count) {
  // calloc returns zero pages without writing them; a short trajectory never touches most of them.
  Array values(static_cast<double*>(std::calloc(count, sizeof(double)))); // NOLINT(*-no-malloc)
  if (values == nullptr) {
    throw std::bad_alloc();
  }
  return values;
}

GeodeticPositions::GeodeticPositions(std::size_t recordCount)
    : latitudes(makeZeroFilled(recordCount)), longitudes(makeZeroFilled(recordCount)),
      heights(makeZeroFilled(recordCount)) {}

void GeodeticPositions::bind(riegl::rdb::pointcloud::QuerySelect& query) {
  bindAttribute(query, attributes::named("riegl.pof_latitude"), latitudes.get());
  bindAttribute(query, attributes::named("riegl.pof_longitude"), longitudes.get());
  bindAttribute(query, attributes::named("riegl.pof_height"), heights.get());
}

void GeodeticPositions::interleave(std::size_t count,
                                   std::vector<Quillon::PhysicalSpace::point>& points) const {
  for (std::size_t i = 0; i < count; ++i) {
    points[i][0] = longitudes[i];
    points[i][1] = latitudes[i];
    points[i][2] = heights[i];
  }
}

std::string convertPositions(const CoordinateSystems& systems, const GeodeticPositions& positions,
                             std::size_t count, std::vector<Quillon::PhysicalSpace::point>& points) {
  positions.interleave(count, points);
  const std::string error = Proj::transform(systems.fromProjStr, systems.toProjStr, points, false);
  if (error.empty()) {
    return std::string();
  }
  return "convertPOFtoZ4: Coordinate Transformation failed: fromProjStr:" + systems.fromProjStr + " to " +
         systems.toProjStr + " with Error: " + error;
}

} // namespace Riegl
