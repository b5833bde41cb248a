// SPDX-License-Identifier: BSD-3-Clause
// The client's plain values: attribute descriptions, the context, the settings of opening.
#include "platform/client/context.h"
#include "platform/client/data_type.h"
#include "platform/client/open_settings.h"
#include "platform/client/point_attribute.h"

#include <gtest/gtest.h>
#include <limits>
#include <ostream>

namespace {

using riegl::rdb::pointcloud::DataType;
using riegl::rdb::pointcloud::PointAttribute;

PointAttribute attribute(double resolution, double minimum, double maximum, double scale = 1) {
  return {"acme.dust",
          "Dust",
          "Grains per cubic metre",
          "1/m3",
          3,
          resolution,
          minimum,
          maximum,
          7.0,
          4,
          5,
          scale,
          -1.0,
          "primary",
          "a,b",
          "1=thin\n2=thick"};
}

TEST(PointAttribute, KeepsWhatItIsMadeFrom) {
  const PointAttribute made = attribute(0.5, -2.0, 9.0, 0.25);
  EXPECT_EQ(made.name + made.title + made.description + made.unit, "acme.dustDustGrains per cubic metre1/m3");
  EXPECT_EQ(made.length, 3U);
  EXPECT_EQ(made.resolution + 100 * made.minimum + 10000 * made.maximum, 0.5 - 200 + 90000);
  EXPECT_EQ(made.defaultValue, 7.0);
  EXPECT_EQ(made.storageCode, 4);
  EXPECT_EQ(made.packingCode, 5);
  EXPECT_EQ(made.scale, 0.25);
  EXPECT_EQ(made.invalidValue, -1.0);
  EXPECT_EQ(made.levels + made.tags + made.namedValues, "primarya,b1=thin\n2=thick");
}

TEST(PointAttribute, IsAnUnscaledFloat64OfOneValueByItself) {
  const PointAttribute made;
  EXPECT_EQ(made.dataType(), DataType::FLOAT64);
  EXPECT_EQ(made.length, 1U);
  EXPECT_EQ(made.scale, 1.0);
  EXPECT_EQ(made.offset, 0.0);
}

TEST(PointAttribute, IsAskedForAsFloat64WhereItIsScaledOrMoved) {
  EXPECT_EQ(attribute(1, 0, 10, 0.5).dataType(), DataType::FLOAT64);
  PointAttribute moved = attribute(1, 0, 10);
  moved.offset = 2;
  EXPECT_EQ(moved.dataType(), DataType::FLOAT64);
}

struct Stored {
  const char* name;
  double resolution, minimum, maximum;
  DataType type;

  friend void PrintTo(const Stored& test, std::ostream* stream) { *stream << test.name; }
};

class StoredAs : public testing::TestWithParam<Stored> {};

TEST_P(StoredAs, SmallestTypeThatHoldsTheRange) {
  const Stored& given = GetParam();
  EXPECT_EQ(attribute(given.resolution, given.minimum, given.maximum).dataType(), given.type);
}

INSTANTIATE_TEST_SUITE_P(
    Range, StoredAs,
    testing::Values(
        Stored{"Uint8", 1, 0, 255, DataType::UINT8}, Stored{"Int8", 1, -128, 127, DataType::INT8},
        Stored{"Uint16", 1, 0, 256, DataType::UINT16}, Stored{"Int16", 1, -129, 32767, DataType::INT16},
        Stored{"Int16ByItsMaximum", 1, -1, 128, DataType::INT16},
        Stored{"Uint32", 1, 0, 65536, DataType::UINT32}, Stored{"Int32", 1, -1, 65535, DataType::INT32},
        Stored{"Uint64", 1, 0, 4294967296.0, DataType::UINT64},
        Stored{"Int64", 1, -1, 4294967296.0, DataType::INT64},
        Stored{"Float64ByItsRange", 1, -1, 1e20, DataType::FLOAT64},
        Stored{"Float64ByItsResolution", 0.5, 0, 1, DataType::FLOAT64},
        Stored{"Float64ByItsMinimum", 1, 0.5, 1, DataType::FLOAT64},
        Stored{"Float64WithoutARange", 1, 1, 0, DataType::FLOAT64},
        Stored{"Float64WithoutNumbers", 1, std::numeric_limits<double>::quiet_NaN(), 1, DataType::FLOAT64}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(Context, KeepsItsTextsInEveryCopy) {
  const riegl::rdb::Context made("settings", "logging");
  riegl::rdb::Context copy;
  EXPECT_EQ(copy.settings() + copy.logging(), "");
  copy = made;
  EXPECT_EQ(copy.settings(), "settings");
  EXPECT_EQ(copy.logging(), "logging");
}

TEST(OpenSettings, LeaveTheNumberOfThreadsToTheClient) {
  riegl::rdb::pointcloud::OpenSettings settings;
  EXPECT_EQ(settings.threadCount, 0U);
  settings.threadCount = 3;
  const riegl::rdb::pointcloud::OpenSettings copy = settings;
  EXPECT_EQ(copy.threadCount, 3U);
}

} // namespace
