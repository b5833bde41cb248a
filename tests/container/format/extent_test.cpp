// SPDX-License-Identifier: BSD-3-Clause
// Extents of every type, with and without scale, against a look at each value.
#include "container/format/extent.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

using container::ComponentExtent;
using container::extentsOf;
using container::NumberKind;
using container::StoredValues;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

template <class T>
class ExtentOf : public testing::Test {
 protected:
  static std::vector<ComponentExtent> extents(const std::vector<T>& values, std::uint64_t length = 1,
                                              double scale = 1, double offset = 0) {
    const NumberKind kind = std::is_floating_point_v<T> ? NumberKind::real
                            : std::is_signed_v<T>       ? NumberKind::signedInteger
                                                        : NumberKind::unsignedInteger;
    std::vector<std::byte> odd(values.size() * sizeof(T) + 1); // at an odd address
    std::memcpy(odd.data() + 1, values.data(), values.size() * sizeof(T));
    return extentsOf({odd.data() + 1, {kind, sizeof(T)}, length, values.size() / length, scale, offset});
  }

  // One value after the other, as the client converts them.
  static std::vector<ComponentExtent> definition(const std::vector<T>& values, std::uint64_t length,
                                                 double scale, double offset) {
    std::vector<ComponentExtent> found(length);
    for (std::size_t i = 0; i < values.size(); ++i) {
      const double value = static_cast<double>(values[i]) * scale + offset;
      ComponentExtent& extent = found[i % length];
      if (std::isnan(value)) {
        ++extent.missing;
        continue;
      }
      extent.minimum = std::min(extent.minimum.value_or(infinity), value);
      extent.maximum = std::max(extent.maximum.value_or(-infinity), value);
    }
    return found;
  }

  // Integers of up to 48 bits, which float64 holds, and reals with a few that are none.
  static std::vector<T> randomValues(std::size_t count) {
    std::mt19937_64 random(count);
    std::vector<T> values;
    for (std::size_t i = 0; i < count; ++i) {
      const auto bits = static_cast<std::int64_t>(random() >> 16) - (1LL << 47);
      if constexpr (std::is_floating_point_v<T>) {
        values.push_back(bits % 7 == 0 ? static_cast<T>(nan) : static_cast<T>(bits));
      } else {
        values.push_back(static_cast<T>(bits));
      }
    }
    if constexpr (sizeof(T) == 8 && std::is_unsigned_v<T>) {
      for (T& value : values) {
        value &= 0xffffffffffffU;
      }
    }
    return values;
  }
};

using EveryType = testing::Types<std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
                                 std::uint32_t, std::int64_t, std::uint64_t, float, double>;
TYPED_TEST_SUITE(ExtentOf, EveryType);

TYPED_TEST(ExtentOf, EveryLengthAndCountIsTheDefinitions) {
  for (std::uint64_t length = 1; length <= 16; ++length) {
    for (const std::size_t records : {0U, 1U, 2U, 4U, 5U, 63U, 64U, 65U, 1000U}) {
      const auto values = this->randomValues(records * length);
      EXPECT_EQ(this->extents(values, length), this->definition(values, length, 1, 0))
          << length << " " << records;
    }
  }
}

TYPED_TEST(ExtentOf, IsThatOfTheScaledValues) {
  const auto values = this->randomValues(999);
  for (const auto& [scale, offset] : {std::pair{0.001, 400.0}, {-0.25, 0.0}, {-3.0, -7e9}, {1.0, 0.5}}) {
    EXPECT_EQ(this->extents(values, 3, scale, offset), this->definition(values, 3, scale, offset)) << scale;
  }
}

TYPED_TEST(ExtentOf, CountsWhatScaleAndOffsetMakeNoNumber) {
  const std::vector<TypeParam> values{1, 0, 3};
  for (const auto& [scale, offset] : {std::pair{nan, 0.0},
                                      {1.0, nan},
                                      {infinity, 0.0},
                                      {0.0, 5.0},
                                      {1.0, -infinity},
                                      {infinity, -infinity}}) {
    EXPECT_EQ(this->extents(values, 1, scale, offset), this->definition(values, 1, scale, offset)) << scale;
  }
}

TYPED_TEST(ExtentOf, FindsALonelyExtremeInEveryPlace) {
  for (std::size_t place = 0; place < 200; ++place) {
    std::vector<TypeParam> values(200, TypeParam{50});
    values[place] = 100;
    EXPECT_EQ(this->extents(values), (std::vector{ComponentExtent{50, 100, 0}})) << place;
    values[place] = 3;
    EXPECT_EQ(this->extents(values), (std::vector{ComponentExtent{3, 50, 0}})) << place;
  }
}

TYPED_TEST(ExtentOf, NoRecordsIsNone) {
  EXPECT_EQ(this->extents({}, 2), std::vector<ComponentExtent>(2));
}

TYPED_TEST(ExtentOf, MoreThanSixteenComponentsIsNotTaken) {
  EXPECT_EQ(this->extents(std::vector<TypeParam>(32), 16).size(), 16U);
  EXPECT_TRUE(this->extents(std::vector<TypeParam>(34), 17).empty());
}

using Doubles = ExtentOf<double>;
using Floats = ExtentOf<float>;
using Longs = ExtentOf<std::int64_t>;
using UnsignedLongs = ExtentOf<std::uint64_t>;

TEST_F(Doubles, InfinitiesAreValuesAndNoNumbersAreMissing) {
  EXPECT_EQ(extents({nan, 1, infinity, nan}), (std::vector{ComponentExtent{1, infinity, 2}}));
  EXPECT_EQ(extents({-infinity, nan}), (std::vector{ComponentExtent{-infinity, -infinity, 1}}));
  EXPECT_EQ(extents({infinity, infinity}), (std::vector{ComponentExtent{infinity, infinity, 0}}));
}

TEST_F(Doubles, WithoutAnyNumberHaveNoExtent) {
  EXPECT_EQ(extents({nan, 1, nan, 2}, 2),
            (std::vector{ComponentExtent{{}, {}, 2}, ComponentExtent{1, 2, 0}}));
}

TEST_F(Doubles, BeyondTheLargestAreInfinite) {
  EXPECT_EQ(extents({1e300, 1}, 1, 1e10, 0), (std::vector{ComponentExtent{1e10, infinity, 0}}));
}

TEST_F(Doubles, OfMinusZeroAreZero) {
  const std::vector<ComponentExtent> found = extents({-0.0, -0.0}, 1, 1, -0.0);
  EXPECT_FALSE(std::signbit(*found[0].minimum));
  EXPECT_FALSE(std::signbit(*found[0].maximum));
}

TEST_F(Floats, AreWidenedExactly) {
  EXPECT_EQ(extents({0.1F, -3.F}), (std::vector{ComponentExtent{-3, static_cast<double>(0.1F), 0}}));
}

TEST_F(Longs, AreRoundedOutward) {
  constexpr std::int64_t big = (1LL << 53) + 1; // between two float64
  EXPECT_EQ(extents({big}), (std::vector{ComponentExtent{0x1p53, 0x1p53 + 2, 0}}));
  EXPECT_EQ(extents({-big}), (std::vector{ComponentExtent{-0x1p53 - 2, -0x1p53, 0}}));
  EXPECT_EQ(extents({big + 2}), (std::vector{ComponentExtent{0x1p53 + 2, 0x1p53 + 4, 0}}));
  EXPECT_EQ(extents({big - 1}), (std::vector{ComponentExtent{0x1p53, 0x1p53, 0}}));
}

TEST_F(Longs, AtTheirEndsAreRoundedOutward) {
  constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
  constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(extents({greatest}), (std::vector{ComponentExtent{0x1p63 - 1024, 0x1p63, 0}}));
  EXPECT_EQ(extents({least, least + 1}), (std::vector{ComponentExtent{-0x1p63, -0x1p63 + 1024, 0}}));
}

TEST_F(UnsignedLongs, AtTheirEndAreRoundedOutward) {
  constexpr std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(extents({greatest}), (std::vector{ComponentExtent{0x1p64 - 2048, 0x1p64, 0}}));
  EXPECT_EQ(extents({0, 1}), (std::vector{ComponentExtent{0, 1, 0}}));
}

} // namespace
