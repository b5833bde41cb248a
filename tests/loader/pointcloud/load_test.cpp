// SPDX-License-Identifier: BSD-3-Clause
// Loads of real database files: blocks, missing columns, conversions, wrong files.
#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/support/console_lines.h"
#include "tests/support/database.h"
#include "tests/support/grid.h"
#include "tests/support/temp_dir.h"

#include <fstream>
#include <gtest/gtest.h>
#include <ostream>
#include <thread>

namespace {

using container::ElementType;
using support::Column;
using support::column;
using support::field;
using Texts = std::vector<std::string>;

class PointCloudFile : public testing::Test {
 protected:
  void givenDatabase(std::uint64_t records, const std::vector<Column>& columns,
                     const std::map<std::string, std::string>& metadata = {}) {
    support::writeDatabase(path, records, columns, metadata);
  }
  std::string load(bool all = false) { return Riegl::rdbx2Z4(path, grid, 0, all, nullptr); }
  std::vector<double> stamps(const std::string& fragment = "Fragment_0") const {
    return support::values<double>(field(grid, "GPSTime"), fragment);
  }
  unsigned char leapSecondsFlag() const {
    return support::attributeValues<unsigned char>(field(grid, "GPSTime")->attributes(), "LeapSecondsAdded?")
        .at(0);
  }

  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
  Nimbra::Grid grid;
};

Column numbered(const std::string& name, ElementType type) {
  return column(name, type, 1, [](std::uint64_t record, unsigned int) { return double(record % 251); });
}

struct Blocks {
  std::uint64_t records;
  std::vector<std::size_t> lengths;

  friend void PrintTo(const Blocks& test, std::ostream* stream) { *stream << test.records << " records"; }
};

class BlocksOfAFile : public PointCloudFile, public testing::WithParamInterface<Blocks> {};

TEST_P(BlocksOfAFile, BecomeFragments) {
  givenDatabase(GetParam().records, {numbered("riegl.target_index", ElementType::uint8)});
  ASSERT_EQ(load(), "");
  const auto indices = field(grid, "TargetIndex");
  ASSERT_EQ(indices->fragments().size(), GetParam().lengths.size());
  std::uint64_t first = 0;
  for (std::size_t i = 0; i < GetParam().lengths.size(); ++i) {
    const std::string name = "Fragment_" + std::to_string(i);
    const auto chunk = support::chunkOf<unsigned char>(indices, name);
    ASSERT_EQ(chunk->size(), GetParam().lengths[i]);
    EXPECT_EQ(chunk->values().front(), first % 251);
    EXPECT_EQ(chunk->values().back(), (first + chunk->size() - 1) % 251);
    EXPECT_EQ(field(grid, "Positions")->array(name)->elementCount(), GetParam().lengths[i]);
    first += chunk->size();
  }
}

INSTANTIATE_TEST_SUITE_P(OfEveryLength, BlocksOfAFile,
                         testing::Values(Blocks{0, {}}, Blocks{1, {1}}, Blocks{4999999, {4999999}},
                                         Blocks{5000000, {5000000}}, Blocks{5000001, {5000000, 1}},
                                         Blocks{10000000, {5000000, 5000000}}));

TEST_F(PointCloudFile, WithCoordinatesOnlyHasOnlyPositions) {
  givenDatabase(3, {column("riegl.xyz", ElementType::float64, 3, [](std::uint64_t record, unsigned int axis) {
                  return double(10 * record + axis);
                })});
  ASSERT_EQ(load(), "");
  EXPECT_EQ(support::fieldNames(grid), Texts{"Positions"});
  EXPECT_EQ(support::fieldNames(grid, support::scanner), Texts{"Positions"});
  EXPECT_TRUE(field(grid, "Positions", support::scanner)->fragments().empty());
  using Point = Quillon::PhysicalSpace::point;
  EXPECT_EQ(support::values<Point>(field(grid, "Positions"), "Fragment_0"),
            (std::vector<Point>{{0, 1, 2}, {10, 11, 12}, {20, 21, 22}}));
}

TEST_F(PointCloudFile, OfTheScannersOwnSystemHasItsDataThere) {
  givenDatabase(2, {column("riegl.xyz_socs", ElementType::float32, 3,
                           [](std::uint64_t, unsigned int axis) { return 0.5 + axis; })});
  ASSERT_EQ(load(), "");
  using Point = Quillon::PhysicalSpace::point;
  EXPECT_EQ(support::values<Point>(field(grid, "Positions", support::scanner), "Fragment_0").at(1),
            Point(0.5, 1.5, 2.5));
  EXPECT_EQ(field(grid, "Positions")->array("Fragment_0")->elementCount(), 2U);
}

TEST_F(PointCloudFile, MayHaveUnknownAttributes) {
  givenDatabase(3,
                {numbered("own.name", ElementType::uint8), numbered("riegl.target_index", ElementType::uint8),
                 numbered("riegl.unheard_of", ElementType::float64)});
  ASSERT_EQ(load(true), "");
  EXPECT_EQ(support::fieldNames(grid), (Texts{"Positions", "TargetIndex"}));
}

TEST_F(PointCloudFile, IsConvertedFromScaledIntegers) {
  Column angle = column("riegl.scan_angle", ElementType::int16, 1,
                        [](std::uint64_t record, unsigned int) { return record == 0 ? -3000.0 : 1500.0; });
  angle.spec.scale = 0.01;
  angle.spec.offset = 1;
  givenDatabase(2, {angle});
  ASSERT_EQ(load(), "");
  EXPECT_EQ(support::values<float>(field(grid, "ScanAngle"), "Fragment_0"),
            (std::vector<float>{-29.0F, 16.0F}));
}

struct TimeBase {
  std::string name;
  std::string text;
  double shift;
  int flag;

  friend void PrintTo(const TimeBase& test, std::ostream* stream) { *stream << test.name; }
};

class TimeBaseOfAFile : public PointCloudFile, public testing::WithParamInterface<TimeBase> {};

TEST_P(TimeBaseOfAFile, MovesTheStampsAndSetsTheFlag) {
  const support::ConsoleLines console;
  const std::map<std::string, std::string> metadata =
      GetParam().text.empty() ? std::map<std::string, std::string>()
                              : std::map<std::string, std::string>{{"riegl.time_base", GetParam().text}};
  givenDatabase(2, {numbered("riegl.timestamp", ElementType::float64)}, metadata);
  ASSERT_EQ(load(), "");
  EXPECT_EQ(stamps(), (std::vector<double>{GetParam().shift, GetParam().shift + 1}));
  EXPECT_EQ(leapSecondsFlag(), GetParam().flag);
}

INSTANTIATE_TEST_SUITE_P(
    OfEveryKind, TimeBaseOfAFile,
    testing::Values(TimeBase{"None", "", 0, 0},
                    TimeBase{"UtcTuesday", R"({"epoch":"2015-10-27","system":"UTC"})", 172800, 0},
                    TimeBase{"GpsTuesday", R"({"epoch":"2015-10-27","system":"GPS"})", 172782, 1},
                    TimeBase{"Refused", "{}", -18, 1}),
    [](const auto& tested) { return tested.param.name; });

TEST_F(PointCloudFile, OfStampsOfAnotherDayIsRefusedWithItsDataOnTheGrid) {
  givenDatabase(2, {column("riegl.timestamp", ElementType::float64, 1,
                           [](std::uint64_t record, unsigned int) { return 100000.5 + double(record); })});
  EXPECT_EQ(load(), "baseRDB2Nimbra:: WeekDay 0 does not match GPSTime: 100000.5");
  EXPECT_EQ(stamps(), (std::vector<double>{100000.5, 100001.5}));
}

TEST_F(PointCloudFile, WithoutStampsHasNoTimeField) {
  givenDatabase(2, {numbered("riegl.class", ElementType::uint8)});
  ASSERT_EQ(load(), "");
  EXPECT_FALSE(field(grid, "GPSTime"));
  EXPECT_FALSE(field(grid, "Classification"));
}

TEST_F(PointCloudFile, LoadsAllAttributesWhereAsked) {
  givenDatabase(2, {numbered("riegl.class", ElementType::uint8)});
  ASSERT_EQ(load(true), "");
  EXPECT_EQ(support::values<unsigned short>(field(grid, "Classification"), "Fragment_0"),
            (std::vector<unsigned short>{0, 1}));
}

TEST_F(PointCloudFile, GivesColourTheBytesOfTheDirection) {
  givenDatabase(2,
                {column("riegl.rgba", ElementType::uint8, 4, [](std::uint64_t, unsigned int) { return 9.0; }),
                 column("riegl.direction_medium", ElementType::float32, 3,
                        [](std::uint64_t record, unsigned int axis) { return double(3 * record + axis); })});
  ASSERT_EQ(load(), "");
  const auto colours = support::chunkOf<Quillon::ColourRGBA>(field(grid, "RGBA"), "Fragment_0");
  const auto* const bytes = static_cast<const unsigned char*>(colours->data());
  EXPECT_EQ(std::vector<unsigned char>(bytes, bytes + 6), (std::vector<unsigned char>{0, 1, 2, 3, 4, 5}));
}

TEST_F(PointCloudFile, LosesTheDirectionWhereThereAreColours) {
  const auto one = [](std::uint64_t, unsigned int) { return 1.0; };
  const auto direction = column("riegl.direction_medium", ElementType::float32, 3, one);
  const auto firstValue = [this] {
    return support::values<Quillon::PhysicalSpace::vector>(field(grid, "DirectionMedium"),
                                                           "Fragment_0")[0][0];
  };
  givenDatabase(2, {direction});
  ASSERT_EQ(load(), "");
  EXPECT_EQ(firstValue(), 1.0);
  givenDatabase(2, {column("riegl.rgba", ElementType::uint8, 4, one), direction});
  ASSERT_EQ(load(), "");
  EXPECT_NE(firstValue(), 1.0);
}

TEST_F(PointCloudFile, WritesNothingToTheConsoleOrTheStreams) {
  const support::ConsoleLines console;
  givenDatabase(2, {numbered("riegl.timestamp", ElementType::float64)});
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  EXPECT_EQ(load(), "");
  path = directory.path("missing.rdbx");
  EXPECT_NE(load(), "");
  EXPECT_EQ(testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr(), "");
  EXPECT_TRUE(console.lines().empty());
}

TEST_F(PointCloudFile, ThatIsNoDatabaseLeavesTheGridAsItWas) {
  std::ofstream(path) << "not a database at all, but long enough to be read as one";
  const std::string result = load();
  EXPECT_NE(result.find("scan.rdbx"), std::string::npos) << result;
  EXPECT_EQ(result.back(), ')');
  EXPECT_TRUE(grid.representations().empty());
}

TEST_F(PointCloudFile, WithMoreValuesPerRecordThanItsBuffersHoldIsRefused) {
  givenDatabase(2, {column("riegl.amplitude", ElementType::float32, 3,
                           [](std::uint64_t, unsigned int) { return 1.0; })});
  EXPECT_EQ(load(),
            "the attribute has another length than its name stands for (column \"riegl.amplitude\" of " +
                path + ": expected 1 values per record, found 3)");
}

TEST_F(PointCloudFile, MayBearAnyNameInUtf8) {
  path = directory.path("Z\xC3\xBCrich scan 50% ?.rdbx");
  givenDatabase(1, {numbered("riegl.target_index", ElementType::uint8)});
  EXPECT_EQ(load(), "");
}

TEST_F(PointCloudFile, MayBeLoadedInTwoThreadsAtOnce) {
  givenDatabase(1000, {numbered("riegl.amplitude", ElementType::float32)});
  const auto loadOnce = [this] {
    Nimbra::Grid own;
    EXPECT_EQ(Riegl::rdbx2Z4(path, own, 0, false, nullptr), "");
    EXPECT_EQ(support::values<float>(field(own, "Amplitude"), "Fragment_0").at(7), 7.0F);
  };
  std::thread other(loadOnce);
  loadOnce();
  other.join();
}

} // namespace
