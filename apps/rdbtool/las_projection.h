// SPDX-License-Identifier: BSD-3-Clause
// The coordinate system of a LAS file as the metadata item riegl.geo_tag.
#pragma once

#include "apps/rdbtool/las_header.h"

#include <string>
#include <vector>

namespace rdbtool {

/// A JSON object {"crs": {"epsg": N, "wkt": "..."}} with the keys that the file supplies; empty if there is none.
/// The number comes from the keys of GeoTIFF (projected before geographic), the text from the WKT record.
std::string geoTagText(const std::vector<LasVariableRecord>& records);

} // namespace rdbtool
