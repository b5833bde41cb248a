// SPDX-License-Identifier: BSD-3-Clause
// A raster of pixels as a PNG file.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace nimbrahost {

/// Pixels row by row from the top, each as red, green and blue.
struct Raster {
  int width = 0;
  int height = 0;
  std::span<const unsigned char> pixels; ///< width * height * 3 bytes; not owned
};

/// Writes the picture; it stands under its name when it is complete. SIGINT, SIGTERM and SIGHUP end the writing.
///
/// \errors apps::OutputError, also after such a signal; an older file is then unchanged
void writePng(const std::string& path, const Raster& raster);

} // namespace nimbrahost
