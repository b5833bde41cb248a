// SPDX-License-Identifier: BSD-3-Clause
// Conversion of points with PROJ.
#include "quarry/transformation.h"

#include <cmath>
#include <cstdlib>
#include <exception>
#include <memory>
#include <proj.h>

namespace {

using Context = std::unique_ptr<PJ_CONTEXT, decltype(&proj_context_destroy)>;
using Operation = std::unique_ptr<PJ, decltype(&proj_destroy)>;

/// The folder that the environment names comes first, then the one of the PROJ that this was built with.
void findData(PJ_CONTEXT* context) {
  const char* named = std::getenv("PROJ_LIB");
  const char* const folders[] = {named != nullptr && *named != '\0' ? named : QUARRY_PROJ_DATA,
                                 QUARRY_PROJ_DATA};
  proj_context_set_search_paths(context, 2, folders);
}

std::string reasonOf(PJ_CONTEXT* context, const std::string& from, const std::string& to) {
  const char* text = proj_context_errno_string(context, proj_context_errno(context));
  return "No conversion from " + from + " to " + to + ": " + (text != nullptr ? text : "unknown");
}

} // namespace

std::string Proj::transform(const std::string& from, const std::string& to,
                            std::vector<Quillon::PhysicalSpace::point>& points, bool) try {
  const Context context(proj_context_create(), proj_context_destroy);
  proj_log_level(context.get(), PJ_LOG_NONE);
  findData(context.get());
  const Operation found(proj_create_crs_to_crs(context.get(), from.c_str(), to.c_str(), nullptr),
                        proj_destroy);
  if (!found) {
    return reasonOf(context.get(), from, to);
  }
  const Operation operation(proj_normalize_for_visualization(context.get(), found.get()), proj_destroy);
  if (!operation) {
    return reasonOf(context.get(), from, to);
  }
  for (auto& point : points) {
    const PJ_COORD image =
        proj_trans(operation.get(), PJ_FWD, proj_coord(point[0], point[1], point[2], HUGE_VAL));
    point[0] = image.xyz.x;
    point[1] = image.xyz.y;
    point[2] = image.xyz.z;
    proj_errno_reset(operation.get());
  }
  return {};
} catch (const std::exception& error) {
  return error.what();
}
