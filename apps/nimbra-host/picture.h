// SPDX-License-Identifier: BSD-3-Clause
// A top view of the points on a grid as a PNG file.
#pragma once

#include "model/nimbra/grid.h"

#include <cstdint>
#include <string>

namespace nimbrahost {

/// What is drawn: points; the origins of pulses, because shots have no points; points joined by lines.
enum class PictureSubject { cloud, shots, path };

/// The largest number of pixels per side.
inline constexpr int largestSide = 16384;

/// The output file, and the size of the picture in pixels, 1 to largestSide per side.
struct PictureRequest {
  std::string file{};
  int width = 1024;
  int height = 768;
  PictureSubject subject = PictureSubject::cloud;
};

/// The outcome; `error` is empty where the file has been written.
struct PictureOutcome {
  std::string file{};
  std::uint64_t pointCount = 0; ///< points inside the picture
  double unitsPerPixel = 0;     ///< of the points' coordinate system; 0 where there is no point
  std::string error{};
};

/// Draws the points from above: x to the right, y (north) up, with one scale for both. Higher points are lighter
/// and hide lower ones; where the grid has a reflectance or an amplitude, stronger echoes are brighter.
/// Points that are not finite are skipped, and so are the few far from all others, which would shrink the rest.
/// A grid without points gives an empty picture.
/// \errors  std::bad_alloc; a file that cannot be written is reported in `error`
PictureOutcome drawPicture(const Nimbra::Grid& grid, const PictureRequest& request);

} // namespace nimbrahost
