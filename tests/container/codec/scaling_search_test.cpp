// SPDX-License-Identifier: BSD-3-Clause
// Which grids are found from values alone, and which values have none.
#include "container/codec/scaling_search.h"

#include "tests/container/codec/blocks.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <stdexcept>

namespace {

using container::NumberKind;
using container::codec::findScaling;
using container::codec::Scaling;

using Scalings = std::vector<Scaling>;

template <class Real>
std::optional<Scalings> found(const std::vector<Real>& values, std::size_t length = 1,
                              const Scalings& hint = {}) {
  return findScaling(blocks::bytesOf(values).data(),
                     {{NumberKind::real, sizeof(Real)}, length, values.size() / length}, hint);
}

// Decimal numbers as they come from a text, next to integers / 10^digits.
std::vector<double> decimals(double centre, double spread, int digits, std::size_t count) {
  std::mt19937_64 random(9);
  std::uniform_real_distribution<double> offset(-spread, spread);
  const double unit = std::pow(10, digits);
  std::vector<double> values;
  for (std::size_t i = 0; i < count; ++i) {
    values.push_back(std::nearbyint((centre + offset(random)) * unit) / unit);
  }
  return values;
}

struct Grid {
  const char* name;
  Scaling source;
  int range; // of its integers
};

void PrintTo(const Grid& row, std::ostream* out) {
  *out << row.name;
}

class EveryGrid : public testing::TestWithParam<Grid> {};

TEST_P(EveryGrid, OfScaledIntegersIsFound) {
  const auto values = blocks::gridValues<double>({GetParam().source}, 20000, GetParam().range);
  const auto scaling = found(values);
  ASSERT_TRUE(scaling);
  EXPECT_EQ(scaling->front().scale, GetParam().source.scale);
}

INSTANTIATE_TEST_SUITE_P(Sources, EveryGrid,
                         testing::Values(Grid{"WholeNumbers", {1, 0}, 1000000},
                                         Grid{"Tenths", {0.1, 0}, 1000000},
                                         Grid{"CentimetresFromZero", {0.01, 0}, 100000000},
                                         Grid{"MillimetresFromZero", {0.001, 0}, 2000000},
                                         Grid{"CentimetresFromARoundOffset", {0.01, 600000}, 500000},
                                         Grid{"MillimetresFromAWholeOffset", {0.001, 4851317}, 1000000},
                                         Grid{"MillimetresFromANegativeOffset", {0.001, -637000}, 500000},
                                         Grid{"Microseconds", {1e-6, 413000}, 900000000},
                                         Grid{"DegreesOfTheEarth", {1e-7, 0}, 1800000000}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ScalingSearch, FindsTheGridOfDecimalNumbersFarFromZero) {
  for (const int digits : {1, 2, 3}) {
    const auto scaling = found(decimals(5412345.678, 400, digits, 30000));
    ASSERT_TRUE(scaling) << digits;
    EXPECT_EQ(scaling->front().scale,
              std::vector<double>({1, 0.1, 0.01, 0.001})[static_cast<unsigned>(digits)]);
  }
}

TEST(ScalingSearch, FindsAnOffsetThatIsAValueItself) {
  std::vector<double> values = blocks::gridValues<double>({{0.01, 0.37}}, 5000, 30000);
  values[0] = 0.37;
  EXPECT_EQ(found(values), (Scalings{{0.01, 0.37}}));
}

TEST(ScalingSearch, FindsTheGridOfSingles) {
  EXPECT_EQ(found(blocks::gridValues<float>({{0.01, 0}}, 5000, 90000)), (Scalings{{0.01, 0}}));
}

TEST(ScalingSearch, FindsEachComponentsOwn) {
  const auto scaling = found(blocks::gridValues<double>({{0.01, 0}, {0.001, 0}, {1, 0}}, 5000), 3);
  EXPECT_EQ(scaling, (Scalings{{0.01, 0}, {0.001, 0}, {1, 0}}));
}

TEST(ScalingSearch, TakesTheHintWhereItHolds) {
  const Scalings source{{0.00025, 0.3}, {0.006, 0}};
  const auto values = blocks::gridValues<double>(source, 5000, 100000);
  EXPECT_FALSE(found(values, 2));
  EXPECT_EQ(found(values, 2, source), source);
}

TEST(ScalingSearch, FindsTheGridInSpiteOfAWrongHint) {
  const auto values = blocks::gridValues<double>({{0.01, 0}}, 5000);
  EXPECT_EQ(found(values, 1, {{0.02, 0}}), (Scalings{{0.01, 0}}));
  EXPECT_EQ(found(values, 1, {{0, 0}}), (Scalings{{0.01, 0}}));
}

TEST(ScalingSearch, RefusesAHintOfAnotherLength) {
  try {
    found<double>({1, 2}, 1, {{1, 0}, {1, 0}});
    ADD_FAILURE() << "no exception";
  } catch (const std::invalid_argument& error) {
    EXPECT_STREQ(error.what(), "hint of scales: expected 1 components, found 2");
  }
}

TEST(ScalingSearch, FindsNoneForOneValueThatHasNone) {
  for (const double wrong : {std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity(), -0.0, 1e300, 1.0 / 3}) {
    for (const std::size_t place : {0U, 1U, 4999U}) {
      auto values = blocks::gridValues<double>({{0.01, 0}}, 5000);
      values[place] = wrong;
      EXPECT_FALSE(found(values)) << wrong << " in place " << place;
    }
  }
}

TEST(ScalingSearch, FindsNoneForRandomBitsIntegersAndNoRecords) {
  std::vector<double> values(1000);
  std::mt19937_64 random(1);
  for (double& value : values) {
    value = std::uniform_real_distribution<double>(-1, 1)(random);
  }
  EXPECT_FALSE(found(values));
  EXPECT_FALSE(found<double>({}));
  EXPECT_FALSE(findScaling(blocks::bytesOf(values).data(), {{NumberKind::signedInteger, 8}, 1, 1000}, {}));
}

TEST(ScalingSearch, FindsTheGridOfOneValue) {
  EXPECT_TRUE(found<double>({1.0 / 3})) << "the value itself is the offset";
}

} // namespace
