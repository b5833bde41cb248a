// SPDX-License-Identifier: BSD-3-Clause
// Geocentric coordinates of imported positions, computed by PROJ.
#include "apps/rdbtool/geocentric.h"

#include "apps/rdbtool/tool_error.h"

#include <proj.h>

namespace rdbtool {

void GeocentricConversion::Destroy::operator()(pj_ctx* created) const {
  proj_context_destroy(created);
}

void GeocentricConversion::Destroy::operator()(PJconsts* created) const {
  proj_destroy(created);
}

GeocentricConversion::GeocentricConversion() : context(proj_context_create()) {
  proj_log_level(context.get(), PJ_LOG_NONE);
  conversion.reset(proj_create(context.get(), "+proj=cart +ellps=WGS84"));
  if (!conversion) {
    throw failed("expected PROJ to convert to geocentric coordinates, found error " +
                 std::to_string(proj_context_errno(context.get())));
  }
}

std::array<double, 3> GeocentricConversion::operator()(double longitude, double latitude,
                                                       double height) const {
  const PJ_COORD place = proj_trans(conversion.get(), PJ_FWD, proj_coord(longitude, latitude, height, 0));
  return {place.xyz.x, place.xyz.y, place.xyz.z};
}

} // namespace rdbtool
