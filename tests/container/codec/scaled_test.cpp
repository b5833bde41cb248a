// SPDX-License-Identifier: BSD-3-Clause
// Scaled values: two roundings, and a refusal unless every value comes back bit for bit.
#include "container/codec/scaled.h"

#include "tests/container/codec/blocks.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace {

using blocks::Bytes;
using container::NumberKind;
using container::ValueFormat;
using container::codec::findIntegers;
using container::codec::firstValueLost;
using container::codec::isUsable;
using container::codec::ScaledValues;
using container::codec::Scaling;
using testing::ElementsAre;

constexpr ValueFormat float64{NumberKind::real, 8};
constexpr ValueFormat float32{NumberKind::real, 4};
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

template <class Real>
std::vector<Real> restored(const std::vector<std::int32_t>& integers, const std::vector<Scaling>& scaling) {
  std::vector<Real> values(integers.size());
  const ScaledValues scaled(scaling, {NumberKind::real, sizeof(Real)});
  scaled.restore(blocks::bytesOf(integers).data(), integers.size() / scaling.size(),
                 reinterpret_cast<std::byte*>(values.data()));
  return values;
}

template <class Real>
bool isFound(const std::vector<Real>& values, const std::vector<Scaling>& scaling,
             std::vector<std::int32_t>& integers) {
  integers.resize(values.size());
  return findIntegers(scaling, {NumberKind::real, sizeof(Real)}, blocks::bytesOf(values).data(),
                      values.size() / scaling.size(), integers.data());
}

bool isFound(double value, const Scaling& scaling) {
  std::vector<std::int32_t> ignored;
  return isFound<double>({value}, {scaling}, ignored);
}

TEST(ScaledValues, RoundTheProductAndTheSumOnTheirOwn) {
  // Fused, the sum would be 1.3877787807814457e-17, what 0.1 has beyond one tenth.
  const volatile double tenth = 0.1;
  ASSERT_NE(std::fma(10.0, tenth, -1.0), 0);
  EXPECT_THAT(restored<double>({10, 11}, {{0.1, -1.0}}), ElementsAre(0.0, 11 * tenth - 1.0));
}

TEST(ScaledValues, AreThenRoundedToTheStoredType) {
  EXPECT_THAT(restored<float>({16777217, -3}, {{0.01, 0.5}}),
              ElementsAre(static_cast<float>(16777217 * 0.01 + 0.5), static_cast<float>(-3 * 0.01 + 0.5)));
}

TEST(ScaledValues, TakeScaleAndOffsetOfTheirComponent) {
  EXPECT_THAT(restored<double>({1, 2, 3, -1, -2, -3}, {{1, 0}, {0.5, 10}, {-2, 1}}),
              ElementsAre(1, 11, -5, -1, 9, 7));
}

TEST(ScaledValues, ReachToTheEndsOfTheIntegers) {
  constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t greatest = std::numeric_limits<std::int32_t>::max();
  EXPECT_THAT(restored<double>({least, greatest}, {{0.5, 0}}), ElementsAre(-1073741824.0, 1073741823.5));
  EXPECT_TRUE(isFound(1073741823.5, {0.5, 0}));
  EXPECT_FALSE(isFound(1073741824.5, {0.5, 0}));
}

TEST(ScaledValues, ComeBackForAllLengthsAndCounts) {
  for (const std::size_t length : {1U, 2U, 3U, 7U, 300U}) {
    std::vector<Scaling> scaling(length, Scaling{0.001, 0});
    scaling.back() = {0.01, 637000};
    for (const std::size_t records : {0U, 1U, 2U, 85U, 256U, 700U}) {
      const auto doubles = blocks::gridValues<double>(scaling, records);
      const auto floats = blocks::gridValues<float>(scaling, records, 5000);
      std::vector<std::int32_t> integers;
      ASSERT_TRUE(isFound(doubles, scaling, integers));
      EXPECT_EQ(restored<double>(integers, scaling), doubles);
      ASSERT_TRUE(isFound(floats, scaling, integers));
      EXPECT_EQ(restored<float>(integers, scaling), floats);
    }
  }
}

TEST(ScaledValues, AreNotFoundWhereOneBitWouldDiffer) {
  EXPECT_TRUE(isFound(0.1, {0.1, 0}));
  EXPECT_FALSE(isFound(std::nextafter(0.1, 1.0), {0.1, 0}));
  EXPECT_FALSE(isFound(0.3, {0.1, 0})) << "3 * 0.1 is not the float64 next to 0.3";
  for (const double value : {nan, -nan, infinity, -infinity, -0.0, 0.05, 1e300, 214748364.8}) {
    EXPECT_FALSE(isFound(value, {0.1, 0})) << value;
  }
}

TEST(ScaledValues, NameTheFirstValueThatIsLost) {
  for (const std::size_t lost : {0U, 1U, 255U, 256U, 299U, 300U}) {
    std::vector<double> values(600, 0.25);
    if (lost < 300) {
      values[lost * 2] = 0.3;
      values[599 - 1] = -0.0;
    }
    const std::uint64_t found =
        firstValueLost({0.25, 0}, float64, reinterpret_cast<const std::byte*>(values.data()), 16, 300);
    EXPECT_EQ(found, lost);
  }
}

TEST(ScaledValues, NameTheFirstSingleThatIsLost) {
  const std::vector<float> values{0.25F, 9.F, 0.3F};
  const Bytes bytes = blocks::bytesOf(values);
  EXPECT_EQ(firstValueLost({0.25, 0}, float32, bytes.data(), 4, 3), 2U);
  EXPECT_EQ(firstValueLost({0.25, 0}, float32, bytes.data(), 4, 2), 2U);
}

TEST(Scaling, IsUsableWhereFiniteAndNotZero) {
  EXPECT_TRUE(isUsable({0.001, 0}));
  EXPECT_TRUE(isUsable({-1e-300, -1e300}));
  for (const Scaling& wrong : {Scaling{0, 0}, Scaling{-0.0, 0}, Scaling{nan, 0}, Scaling{infinity, 0},
                               Scaling{1, nan}, Scaling{1, -infinity}}) {
    EXPECT_FALSE(isUsable(wrong)) << wrong.scale << " " << wrong.offset;
  }
}

} // namespace
