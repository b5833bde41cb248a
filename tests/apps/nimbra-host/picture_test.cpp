// SPDX-License-Identifier: BSD-3-Clause
// The picture: scale, directions, colours, and grids that are hard to draw.
#include "apps/nimbra-host/picture.h"

#include "tests/apps/nimbra-host/hand_made_grid.h"
#include "tests/support/temp_dir.h"

#include <gmock/gmock.h>
#include <limits>
#include <png.h>

namespace {

using hosttest::HandMade;
using nimbrahost::PictureSubject;
using Points = std::vector<Quillon::PhysicalSpace::point>;

struct Raster {
  int width = 0;
  int height = 0;
  std::vector<unsigned char> pixels;

  int brightness(int column, int row) const {
    const auto at = static_cast<std::size_t>((row * width + column) * 3);
    return pixels[at] + pixels[at + 1] + pixels[at + 2];
  }
  bool lit(int column, int row) const { return brightness(column, row) > 18 + 20 + 26; }
};

Raster readPng(const std::string& file) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  EXPECT_NE(png_image_begin_read_from_file(&image, file.c_str()), 0) << image.message;
  image.format = PNG_FORMAT_RGB;
  Raster raster{static_cast<int>(image.width), static_cast<int>(image.height), {}};
  raster.pixels.resize(PNG_IMAGE_SIZE(image));
  EXPECT_NE(png_image_finish_read(&image, nullptr, raster.pixels.data(), 0, nullptr), 0);
  return raster;
}

class Picture : public testing::Test {
 protected:
  Raster draw(const HandMade& load, PictureSubject subject = PictureSubject::cloud) {
    request.subject = subject;
    outcome = drawPicture(*load.outcome.grid, request);
    EXPECT_EQ(outcome.error, "");
    return readPng(request.file);
  }

  support::TempDir directory;
  nimbrahost::PictureRequest request{.file = directory.path("a.png"), .width = 100, .height = 50};
  nimbrahost::PictureOutcome outcome;
};

/// Four corners of a square with a side of 94, the height growing in the order of the points.
Points square() {
  return {{0, 0, 0}, {94, 0, 1}, {0, 94, 2}, {94, 94, 3}};
}

TEST_F(Picture, GridWithoutPointsGivesAnEmptyPictureOfTheWantedSize) {
  const Raster raster = draw(HandMade());
  EXPECT_EQ(raster.width, 100);
  EXPECT_EQ(raster.height, 50);
  EXPECT_EQ(outcome.pointCount, 0U);
  EXPECT_FALSE(raster.lit(50, 25));
}

TEST_F(Picture, BothAxesHaveOneScaleAndTheMiddleStaysInTheMiddle) {
  HandMade load;
  const Raster raster = draw(load.column("Positions", square()));
  EXPECT_DOUBLE_EQ(outcome.unitsPerPixel, 2.0);
  EXPECT_EQ(outcome.pointCount, 4U);
  for (const int column : {26, 73}) {
    EXPECT_TRUE(raster.lit(column, 1) && raster.lit(column, 48)) << column;
  }
  EXPECT_FALSE(raster.lit(2, 25));
}

TEST_F(Picture, NorthIsUpAndHigherIsLighter) {
  HandMade load;
  const Raster raster = draw(load.column("Positions", square()));
  EXPECT_GT(raster.brightness(73, 1), raster.brightness(26, 1));
  EXPECT_GT(raster.brightness(26, 1), raster.brightness(73, 48));
  EXPECT_GT(raster.brightness(73, 48), raster.brightness(26, 48));
}

TEST_F(Picture, HigherPointHidesALowerOneInAnyOrder) {
  HandMade upwards;
  HandMade downwards;
  Points points = square();
  points.insert(points.end(), {{47, 47, 0}, {47, 47, 3}});
  const Raster first = draw(upwards.column("Positions", points));
  std::reverse(points.begin(), points.end());
  EXPECT_EQ(first.pixels, draw(downwards.column("Positions", points)).pixels);
}

TEST_F(Picture, StrongEchoesAreBrighter) {
  HandMade load;
  load.column<Quillon::PhysicalSpace::point>("Positions", {{0, 0, 5}, {94, 0, 5}});
  const Raster raster = draw(load.column<float>("Amplitude", {1, 20}));
  EXPECT_GT(raster.brightness(97, 25), raster.brightness(3, 25) * 3 / 2);
}

TEST_F(Picture, WeakestEchoOfTheLowestPointStandsOutFromTheBackground) {
  HandMade load;
  load.column("Positions", square());
  const Raster raster = draw(load.column<float>("Amplitude", {1, 20, 20, 20}));
  EXPECT_GT(raster.brightness(26, 48), 2 * raster.brightness(2, 25));
}

TEST_F(Picture, PointsThatAreNotFiniteAreLeftOut) {
  constexpr double none = std::numeric_limits<double>::quiet_NaN();
  constexpr double infinity = std::numeric_limits<double>::infinity();
  HandMade load;
  Points points = square();
  points.insert(points.end(), {{none, 1, 1}, {infinity, 1, 1}, {1, -infinity, 1}, {1e308, -1e308, 0}});
  draw(load.column("Positions", points));
  EXPECT_EQ(outcome.pointCount, 4U);
  EXPECT_DOUBLE_EQ(outcome.unitsPerPixel, 2.0);
}

TEST_F(Picture, FarOutliersDoNotShrinkTheRest) {
  HandMade load;
  Points points;
  for (int i = 0; i < 10000; ++i) {
    points.emplace_back(i % 100, i / 100, 0);
  }
  points.emplace_back(1e9, -1e12, 0);
  draw(load.column("Positions", points));
  EXPECT_EQ(outcome.pointCount, 10000U);
  EXPECT_LT(outcome.unitsPerPixel, 5.0);
}

TEST_F(Picture, SinglePointStandsInTheMiddle) {
  HandMade load;
  const Raster raster = draw(load.column("Positions", Points{{4e5, 5e6, 100}}));
  EXPECT_TRUE(raster.lit(50, 25));
  EXPECT_EQ(outcome.pointCount, 1U);
}

TEST_F(Picture, TrajectoryIsALine) {
  HandMade load;
  const Raster raster = draw(load.column("Positions", Points{{0, 0, 0}, {94, 0, 0}}), PictureSubject::path);
  for (int column = 3; column < 97; ++column) {
    EXPECT_TRUE(raster.lit(column, 25)) << column;
  }
}

TEST_F(Picture, ShotsAreDrawnByTheirOrigins) {
  HandMade load;
  load.column("Positions", Points(2)).column("ShotOrigin", square());
  draw(load, PictureSubject::shots);
  EXPECT_EQ(outcome.pointCount, 4U);
}

TEST_F(Picture, EveryPointOfALargeSurveyIsInside) {
  HandMade load;
  Points points(600001, {5, 5, 0});
  points[1] = {0, 10, 0};
  points[5] = {10, 0, 0};
  points[7] = {2, 2, 0};
  for (std::size_t i = 9; i < points.size(); i += 2) {
    points[i] = {double(i % 10) + 0.5, double(i % 9), 0};
  }
  draw(load.column("Positions", points));
  EXPECT_EQ(outcome.pointCount, 600001U);
}

TEST_F(Picture, FileThatCannotBeWrittenIsReported) {
  request.file = directory.path("missing/a.png");
  EXPECT_THAT(drawPicture(*HandMade().outcome.grid, request).error,
              testing::StartsWith("cannot write " + request.file + ": "));
}

} // namespace
