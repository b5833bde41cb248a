// SPDX-License-Identifier: BSD-3-Clause
// How many values per record the buffer of an attribute has room for, for clients whose columns are plain memory.
#pragma once

#include <set>
#include <string>

namespace support {

/// Whether an attribute may have `length` values per record: three where its element is a point or a vector, up to three
/// for the intersections of hydrography, one for the other standard names, any number for all other names.
inline bool lengthFits(const std::string& name, unsigned length) {
  static const std::set<std::string> triples{
      "riegl.xyz",         "riegl.xyz_socs",       "riegl.pof_xyz",
      "riegl.shot_origin", "riegl.shot_direction", "riegl.direction_medium"};
  if (name.rfind("riegl.", 0) != 0 || name == "riegl.rgba") {
    return true;
  }
  if (name.rfind("riegl.hydro_intersection_", 0) == 0) {
    return length <= 3;
  }
  return length == (triples.count(name) != 0 ? 3U : 1U);
}

} // namespace support
