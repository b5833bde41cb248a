// SPDX-License-Identifier: BSD-3-Clause
// Transforms points from one coordinate system to another.
#pragma once

#include "arrays/quillon/physical_space.h"
#include "model/torvel/core/api.h"

#include <string>
#include <vector>

namespace Proj {

/// Transforms every point in place, from one coordinate system to another.
///
/// \param from    source system as PROJ reads it, for example "+proj=latlong"; geographic coordinates are
///                x longitude in degrees, y latitude in degrees, z ellipsoidal height in metres
/// \param to      target system, for example "epsg:32633"; x runs east and y north where the system is
///                projected or geographic, and z is carried where it has no height of its own
/// \param points  in/out; a point that the operation cannot take becomes infinite or not-a-number and ends
///                nothing, whatever its bits are
/// \return empty on success, otherwise why no point was touched
///
/// PROJ's data are looked for in the folders that the variable PROJ_LIB names, in the folder of this library,
/// and then where PROJ itself looks: its folder of downloads, the variable PROJ_DATA, and the folder that it was
/// installed to. The first proj.db is taken. The network is not used. Large batches run on two threads, and a run of
/// bitwise equal points is computed once; the values are those of one thread, bit for bit. Each calling
/// thread keeps the operation that it used last until it ends.
/// \errors  never throws \threads safe on distinct vectors
TORVEL_API std::string transform(const std::string& from, const std::string& to,
                                 std::vector<Quillon::PhysicalSpace::point>& points, bool reserved);

} // namespace Proj
