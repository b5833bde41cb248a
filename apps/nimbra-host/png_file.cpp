// SPDX-License-Identifier: BSD-3-Clause
// A raster of pixels as a PNG file.
#include "apps/nimbra-host/png_file.h"

#include "apps/common/interruption.h"
#include "apps/common/output_file.h"

#include <csetjmp>
#include <exception>
#include <memory>
#include <png.h>

namespace nimbrahost {

namespace {

/// Compressed bytes that libpng collects before it hands them on.
constexpr std::size_t pieceBytes = 65536;

/// Where the encoded bytes go, and why they stopped.
struct Sink {
  const std::string& path;
  apps::OutputFile& file;
  std::string message{};
  std::exception_ptr failure{};
};

void append(Sink& sink, std::string_view bytes) {
  if (apps::interrupted()) {
    throw apps::OutputError(sink.path, "time to finish the picture", "an interruption");
  }
  sink.file.write(bytes);
}

// libpng is C: an exception must not cross it, and its errors leave by a long jump.
extern "C" {

[[noreturn]] void onError(png_structp png, png_const_charp text) {
  static_cast<Sink*>(png_get_error_ptr(png))->message = text;
  png_longjmp(png, 1);
}

void onWarning(png_structp, png_const_charp) {}

void onBytes(png_structp png, png_bytep bytes, png_size_t count) {
  auto& sink = *static_cast<Sink*>(png_get_io_ptr(png));
  try {
    append(sink, {reinterpret_cast<const char*>(bytes), count});
  } catch (...) {
    sink.failure = std::current_exception();
  }
  if (sink.failure) {
    png_error(png, "");
  }
}

void onFlush(png_structp) {}
}

/// The two structures of libpng for one file.
struct Encoder {
  explicit Encoder(Sink& sink)
      : png(png_create_write_struct(PNG_LIBPNG_VER_STRING, &sink, onError, onWarning)),
        info(png != nullptr ? png_create_info_struct(png) : nullptr) {
    if (info == nullptr) {
      png_destroy_write_struct(&png, nullptr);
      throw std::bad_alloc();
    }
    png_set_write_fn(png, &sink, onBytes, onFlush);
  }
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;
  ~Encoder() { png_destroy_write_struct(&png, &info); }

  png_structp png;
  png_infop info;
};

/// \return false where libpng has given up. A long jump ends here, so nothing in here may have a destructor.
bool encode(png_structp png, png_infop info, const Raster& raster) {
  if (setjmp(png_jmpbuf(png)) != 0) {
    return false;
  }
  const auto width = static_cast<png_uint_32>(raster.width);
  png_set_compression_buffer_size(png, pieceBytes);
  png_set_IHDR(png, info, width, static_cast<png_uint_32>(raster.height), 8, PNG_COLOR_TYPE_RGB,
               PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_set_sRGB(png, info, PNG_sRGB_INTENT_PERCEPTUAL);
  png_write_info(png, info);
  for (std::size_t row = 0; row < static_cast<std::size_t>(raster.height); ++row) {
    png_write_row(png, raster.pixels.data() + row * width * 3);
  }
  png_write_end(png, info);
  return true;
}

} // namespace

void writePng(const std::string& path, const Raster& raster) {
  const apps::InterruptionWatch watch;
  apps::OutputFile file(path);
  Sink sink{path, file};
  const Encoder encoder(sink);
  if (!encode(encoder.png, encoder.info, raster)) {
    if (sink.failure) {
      std::rethrow_exception(sink.failure);
    }
    throw apps::OutputError(path, "a picture that can be encoded", sink.message);
  }
  file.putInPlace();
}

} // namespace nimbrahost
