// SPDX-License-Identifier: BSD-3-Clause
// A top view of what a load has put on a grid, as a PNG file.
#pragma once

#include "model/nimbra/grid.h"

#include <cstdint>
#include <string>

namespace nimbrahost {

/// What is drawn: points; the origins of pulses, because a file of shots has no points; points joined by lines.
enum class PictureSubject { cloud, shots, path };

/// The most pixels that a picture may have on a side.
inline constexpr int largestSide = 16384;

/// Where the picture goes, and its size in pixels, 1 to largestSide a side.
struct PictureRequest {
  std::string file{};
  int width = 1024;
  int height = 768;
  PictureSubject subject = PictureSubject::cloud;
};

/// What came of it: `error` is empty where the file has been written.
struct PictureOutcome {
  std::string file{};
  std::uint64_t pointCount = 0; ///< points that lie inside the picture
  double unitsPerPixel = 0;     ///< of the points' coordinate system; 0 where there is no point
  std::string error{};
};

/// Draws the points from above: x to the right, y (north) up, one scale for both. Higher points are lighter
/// and hide lower ones; where the grid has a reflectance or an amplitude, stronger echoes are brighter.
/// Points that are not finite are left out, and a few that lie far from all others do not shrink the rest.
/// A grid without points gives an empty picture.
/// \errors  none: a file that cannot be written is told in `error`
PictureOutcome drawPicture(const Nimbra::Grid& grid, const PictureRequest& request);

} // namespace nimbrahost
