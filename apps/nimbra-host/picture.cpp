// SPDX-License-Identifier: BSD-3-Clause
// Draws points into a raster.
#include "apps/nimbra-host/picture.h"

#include "apps/common/output_file.h"
#include "apps/nimbra-host/elements.h"
#include "apps/nimbra-host/png_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

namespace nimbrahost {

namespace {

using Point = Quillon::PhysicalSpace::point;
using Colour = std::array<double, 3>;

/// Larger coordinates are treated as damage: their differences could overflow.
constexpr double largestCoordinate = 1e100;
/// Approximate number of points that the extents are computed from.
constexpr std::uint64_t sampledPoints = 200000;
constexpr double marginShare = 0.03;

/// Whether element `number` is in the sample. The choice is scattered, because a scanner's echoes form patterns that
/// every n-th point could miss.
bool isSampled(std::uint64_t number, std::uint64_t stride) {
  return ((number * 0x9e3779b97f4a7c15ULL) >> 32) % stride == 0;
}

/// The fragments of a column as spans; empty spans for another element type.
template <class T>
std::vector<std::span<const T>> piecesOf(const Nimbra::Field::Pointer& field) {
  std::vector<std::span<const T>> pieces;
  for (std::size_t i = 0; field && i < field->fragments().size(); ++i) {
    const Nimbra::MemBase::Pointer array = field->fragments()[i].array();
    const auto chunk = array ? array->chunkBase() : nullptr;
    pieces.emplace_back();
    if (chunk) {
      visitElements(*chunk, array->elementCount(), [&pieces]<class Found>(std::span<const Found> elements) {
        if constexpr (std::is_same_v<Found, T>) {
          pieces.back() = elements;
        }
      });
    }
  }
  return pieces;
}

template <class T>
std::uint64_t totalOf(const std::vector<std::span<const T>>& pieces) {
  std::uint64_t total = 0;
  for (const auto& piece : pieces) {
    total += piece.size();
  }
  return total;
}

/// The first column with one of these names that has elements; the common chart is searched before the scanner's.
template <class T>
std::vector<std::span<const T>> findColumn(const Nimbra::Grid& grid,
                                           std::initializer_list<const char*> names) {
  for (const char* const name : names) {
    const auto chart = grid.getCartesianRepresentation("StandardCartesianChart3D");
    if (auto pieces = piecesOf<T>(chart ? chart->field(name) : nullptr); totalOf(pieces) > 0) {
      return pieces;
    }
    for (const auto& representation : grid.representations()) {
      if (auto pieces = piecesOf<T>(representation->field(name)); totalOf(pieces) > 0) {
        return pieces;
      }
    }
  }
  return {};
}

bool usable(const Point& point) {
  return std::all_of(point.begin(), point.end(),
                     [](double value) { return std::abs(value) <= largestCoordinate; });
}

struct Interval {
  double low = 0;
  double high = 0;
  double extent() const { return high - low; }
  bool holds(double value) const { return value >= low && value <= high; }
};

/// The interval between two symmetric quantiles, widened by a share of its extent, but within `most`.
Interval central(std::vector<double> values, double share, double widening, const Interval& most) {
  if (values.empty()) {
    return {};
  }
  std::sort(values.begin(), values.end());
  const auto last = static_cast<double>(values.size() - 1);
  const auto at = [&](double place) { return values[static_cast<std::size_t>(std::lround(place * last))]; };
  const Interval middle{at(share), at(1 - share)};
  const double beyond = middle.extent() * widening;
  return {std::max(most.low, middle.low - beyond), std::min(most.high, middle.high + beyond)};
}

/// The part of space that the picture shows.
struct Extents {
  std::array<Interval, 3> axes;
  bool empty = true;
};

constexpr Interval everything{-std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::infinity()};

Extents findExtents(const std::vector<std::span<const Point>>& pieces) {
  const std::uint64_t stride = totalOf(pieces) / sampledPoints + 1;
  std::array<std::vector<double>, 3> samples;
  std::array<Interval, 3> whole;
  whole.fill({everything.high, everything.low});
  std::uint64_t number = 0;
  for (const auto& piece : pieces) {
    for (const Point& point : piece) {
      if (!usable(point)) {
        continue;
      }
      const bool sampled = isSampled(number++, stride);
      for (std::size_t axis = 0; axis < 3; ++axis) {
        whole[axis] = {std::min(whole[axis].low, point[axis]), std::max(whole[axis].high, point[axis])};
        if (sampled) {
          samples[axis].push_back(point[axis]);
        }
      }
    }
  }
  Extents extents;
  extents.empty = number == 0;
  // Half the central extent on either side keeps the corners of a survey and excludes distant outliers.
  for (const std::size_t axis : {0U, 1U}) {
    extents.axes[axis] = central(std::move(samples[axis]), 0.01, 0.5, whole[axis]);
  }
  extents.axes[2] = central(std::move(samples[2]), 0.02, 0.0, whole[2]);
  return extents;
}

/// The position of a point in the raster, in pixels from the upper left corner.
struct Place {
  double column = 0;
  double row = 0;
};

/// The raster, and the height of the point that each pixel shows.
class Canvas {
 public:
  Canvas(const PictureRequest& request, const Extents& shown)
      : width(request.width), height(request.height), extents(shown),
        pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3),
        heights(pixels.size() / 3, -std::numeric_limits<double>::infinity()) {
    const double room = 1 - 2 * marginShare;
    const double across = extents.axes[0].extent() / (room * width);
    const double along = extents.axes[1].extent() / (room * height);
    scale = std::max({across, along, std::numeric_limits<double>::min()});
    if (across == 0 && along == 0) {
      scale = 1;
    }
    for (std::size_t i = 0; i < pixels.size(); ++i) {
      pixels[i] = std::array<unsigned char, 3>{18, 20, 26}[i % 3];
    }
  }

  double unitsPerPixel() const { return scale; }
  bool shows(const Point& point) const {
    return usable(point) && extents.axes[0].holds(point[0]) && extents.axes[1].holds(point[1]);
  }

  Place placeOf(const Point& point) const {
    const auto offset = [](const Interval& axis, double value) {
      return value - (axis.low + axis.extent() / 2);
    };
    return {width / 2.0 + offset(extents.axes[0], point[0]) / scale,
            height / 2.0 - offset(extents.axes[1], point[1]) / scale};
  }

  /// Sets a square of pixels, except those that show a higher point.
  void set(const Place& place, double z, const Colour& colour, int side) {
    const int left = static_cast<int>(std::floor(place.column)) - (side - 1) / 2;
    const int top = static_cast<int>(std::floor(place.row)) - (side - 1) / 2;
    for (int row = std::max(top, 0); row < std::min(top + side, height); ++row) {
      for (int column = std::max(left, 0); column < std::min(left + side, width); ++column) {
        const auto pixel = static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
                           static_cast<std::size_t>(column);
        if (z < heights[pixel]) {
          continue;
        }
        heights[pixel] = z;
        for (std::size_t channel = 0; channel < 3; ++channel) {
          pixels[3 * pixel + channel] = static_cast<unsigned char>(std::lround(colour[channel]));
        }
      }
    }
  }

  Raster raster() const { return {width, height, pixels}; }

 private:
  int width;
  int height;
  Extents extents;
  double scale = 1;
  std::vector<unsigned char> pixels;
  std::vector<double> heights;
};

/// The relative position of a value in an interval, 0 to 1; 0.5 for an empty interval and for not-a-number.
double shareOf(const Interval& interval, double value) {
  const double share = (value - interval.low) / interval.extent();
  return interval.extent() > 0 && share == share ? std::clamp(share, 0.0, 1.0) : 0.5;
}

/// From dark blue over green to light yellow, even in lightness.
Colour heightColour(double share) {
  constexpr std::array<Colour, 5> stops = {
      {{68, 62, 140}, {45, 112, 142}, {38, 160, 130}, {120, 205, 85}, {250, 232, 90}}};
  const double place = share * (stops.size() - 1);
  const std::size_t below = std::min(static_cast<std::size_t>(place), stops.size() - 2);
  Colour colour{};
  for (std::size_t channel = 0; channel < 3; ++channel) {
    colour[channel] = std::lerp(stops[below][channel], stops[below + 1][channel], place - double(below));
  }
  return colour;
}

// The colour column is not used: a load fills it with other bytes than the colours of the points.
std::vector<std::span<const float>> findStrength(const Nimbra::Grid& grid) {
  return findColumn<float>(grid, {"Reflectance", "Amplitude"});
}

Interval strengthRange(const std::vector<std::span<const float>>& pieces) {
  const std::uint64_t stride = totalOf(pieces) / sampledPoints + 1;
  std::vector<double> samples;
  std::uint64_t number = 0;
  for (const auto& piece : pieces) {
    for (const float value : piece) {
      if (isSampled(number++, stride) && std::isfinite(value)) {
        samples.push_back(value);
      }
    }
  }
  return central(std::move(samples), 0.05, 0.0, everything);
}

/// Small surveys have larger dots, for visibility.
int dotSide(const PictureRequest& request, std::uint64_t points) {
  const double pixelsPerPoint =
      double(request.width) * request.height / double(std::max<std::uint64_t>(points, 1));
  return pixelsPerPoint > 200 ? 3 : pixelsPerPoint > 20 ? 2 : 1;
}

std::uint64_t drawCloud(Canvas& canvas, const Nimbra::Grid& grid, const Extents& extents,
                        const std::vector<std::span<const Point>>& pieces, int side) {
  const auto strengths = findStrength(grid);
  const Interval range = strengthRange(strengths);
  std::uint64_t drawn = 0;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const bool paired = i < strengths.size() && strengths[i].size() == pieces[i].size();
    for (std::size_t number = 0; number < pieces[i].size(); ++number) {
      const Point& point = pieces[i][number];
      if (!canvas.shows(point)) {
        continue;
      }
      Colour colour = heightColour(shareOf(extents.axes[2], point[2]));
      if (paired) {
        const double brightness = 0.65 + 0.35 * shareOf(range, double(strengths[i][number]));
        std::for_each(colour.begin(), colour.end(), [&](double& channel) { channel *= brightness; });
      }
      canvas.set(canvas.placeOf(point), point[2], colour, side);
      ++drawn;
    }
  }
  return drawn;
}

/// A line between two pixels of the picture, so its length is bounded.
void drawLine(Canvas& canvas, const Place& from, const Place& to, const Colour& colour) {
  const double length = std::max(std::abs(to.column - from.column), std::abs(to.row - from.row));
  const int steps = std::max(1, static_cast<int>(std::ceil(length)));
  for (int step = 0; step <= steps; ++step) {
    const double share = double(step) / steps;
    canvas.set({std::lerp(from.column, to.column, share), std::lerp(from.row, to.row, share)}, 0, colour, 2);
  }
}

std::uint64_t drawPath(Canvas& canvas, const Extents& extents,
                       const std::vector<std::span<const Point>>& pieces) {
  const Point* before = nullptr;
  std::uint64_t drawn = 0;
  for (const auto& piece : pieces) {
    for (const Point& point : piece) {
      if (!canvas.shows(point)) {
        before = nullptr;
        continue;
      }
      const Place place = canvas.placeOf(point);
      const Colour colour = heightColour(shareOf(extents.axes[2], point[2]));
      drawLine(canvas, before != nullptr ? canvas.placeOf(*before) : place, place, colour);
      before = &point;
      ++drawn;
    }
  }
  return drawn;
}

} // namespace

PictureOutcome drawPicture(const Nimbra::Grid& grid, const PictureRequest& request) {
  const bool ofShots = request.subject == PictureSubject::shots;
  const auto pieces = findColumn<Point>(grid, {ofShots ? "ShotOrigin" : "Positions"});
  const Extents extents = findExtents(pieces);
  Canvas canvas(request, extents);
  PictureOutcome outcome;
  outcome.file = request.file;
  if (!extents.empty) {
    outcome.unitsPerPixel = canvas.unitsPerPixel();
    outcome.pointCount = request.subject == PictureSubject::path
                             ? drawPath(canvas, extents, pieces)
                             : drawCloud(canvas, grid, extents, pieces, dotSide(request, totalOf(pieces)));
  }
  try {
    writePng(request.file, canvas.raster());
  } catch (const apps::OutputError& error) {
    outcome.error = error.what();
  }
  return outcome;
}

} // namespace nimbrahost
