// SPDX-License-Identifier: BSD-3-Clause
// Pins which element an index selects, and the number of elements of a view.
#include "arrays/nimbra/multi_array.h"

#include <cstddef>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>
#include <ostream>
#include <string>
#include <vector>

using Nimbra::elementTotal;
using Nimbra::MultiIndex;

namespace {

std::vector<double> countingUp(std::size_t count) {
  std::vector<double> values(count);
  std::iota(values.begin(), values.end(), 0.0);
  return values;
}

template <int N>
Nimbra::MultiArray<N, double> over(std::vector<double>& values, const MultiIndex<N>& extents) {
  Nimbra::MultiArray<N, double> array;
  array.count = values.size();
  array.limit = values.size();
  array.data = values.data();
  array.size = extents;
  return array;
}

TEST(Hyperslab, StrideOneAddressesElementByElement) {
  auto values = countingUp(10);
  const auto array = over<1>(values, {10});
  EXPECT_EQ(array.place(0), values.data());
  EXPECT_EQ(array.place(7), values.data() + 7);
  EXPECT_EQ(array.at(7), 7.0);
  EXPECT_EQ(array.element(7), 7.0);
}

TEST(Hyperslab, StartIsAddedBeforeTheStrideMultiplies) {
  auto values = countingUp(20);
  auto array = over<1>(values, {5});
  array.start = 2;
  array.stride = 3;
  EXPECT_EQ(array.place(1), values.data() + 9);
  EXPECT_EQ(array.at(1), 9.0);
}

TEST(Hyperslab, FirstExtentRunsFastest) {
  auto values = countingUp(24);
  EXPECT_EQ(over<2>(values, {4, 6}).at(3, 2), 3.0 + 2 * 4);
  EXPECT_EQ(over<3>(values, {2, 3, 4}).at(1, 2, 3), 1.0 + 2 * (2 + 3 * 3));
  EXPECT_EQ(over<4>(values, {2, 3, 2, 2}).at(1, 2, 1, 1), 1.0 + 2 * (2 + 3 * (1 + 2 * 1)));
}

TEST(Hyperslab, StartAndStrideWorkOnTheLinearIndex) {
  auto values = countingUp(40);
  auto array = over<2>(values, {3, 4});
  array.start = 1;
  array.stride = 2;
  EXPECT_EQ(array.at(2, 3), (2 + 3 * 3 + 1) * 2.0);
}

struct ViewCase {
  const char* name;
  Nimbra::HyperslabParameters view;
  std::uint64_t available;

  friend void PrintTo(const ViewCase& test, std::ostream* stream) { *stream << test.name; }
};

class AvailableElements : public testing::TestWithParam<ViewCase> {};

TEST_P(AvailableElements, FollowFromTheView) {
  EXPECT_EQ(GetParam().view.available(), GetParam().available);
}

INSTANTIATE_TEST_SUITE_P(Views, AvailableElements,
                         testing::Values(ViewCase{"whole", {100, 1, 100, 0, 0}, 100},
                                         ViewCase{"limitCountsAtStrideOne", {100, 1, 90, 0, 0}, 90},
                                         ViewCase{"startAndTailAreTakenAway", {100, 1, 100, 10, 5}, 85},
                                         ViewCase{"strideDividesTheCount", {100, 3, 7, 0, 0}, 33},
                                         ViewCase{"strideWithStartAndTail", {100, 3, 7, 2, 1}, 30},
                                         ViewCase{"moreCutThanHeld", {10, 1, 10, 8, 8}, 0},
                                         ViewCase{"strideZero", {10, 0, 10, 0, 0}, 0},
                                         ViewCase{"empty", {0, 1, 0, 0, 0}, 0}),
                         [](const auto& row) { return row.param.name; });

TEST(Hyperslab, ParametersKeepTheFixedOrder) {
  using Nimbra::HyperslabParameters;
  EXPECT_EQ(offsetof(HyperslabParameters, count), 0U);
  EXPECT_EQ(offsetof(HyperslabParameters, stride), 8U);
  EXPECT_EQ(offsetof(HyperslabParameters, limit), 16U);
  EXPECT_EQ(offsetof(HyperslabParameters, start), 24U);
  EXPECT_EQ(offsetof(HyperslabParameters, tail), 32U);
  EXPECT_EQ(sizeof(HyperslabParameters), 40U);
}

TEST(Hyperslab, IterationVisitsTheAvailableElements) {
  auto values = countingUp(10);
  auto array = over<1>(values, {10});
  array.start = 2;
  array.tail = 3;
  std::vector<double> seen;
  array.forEach([&](double value) { seen.push_back(value); });
  EXPECT_THAT(seen, testing::ElementsAre(2, 3, 4, 5, 6));
}

TEST(Hyperslab, LastIndexIsZeroWhereTheExtentIsZero) {
  EXPECT_EQ(Nimbra::lastIndex(MultiIndex<2>{4, 6}), (MultiIndex<2>{3, 5}));
  EXPECT_EQ(Nimbra::lastIndex(MultiIndex<3>{4, 0, 1}), (MultiIndex<3>{3, 0, 0}));
}

TEST(Hyperslab, ElementTotalOfHugeExtentsSaturates) {
  constexpr std::uint64_t huge = std::uint64_t{1} << 40;
  EXPECT_EQ(elementTotal(MultiIndex<2>{3, 4}), 12U);
  EXPECT_EQ(elementTotal(MultiIndex<3>{huge, 0, huge}), 0U);
  EXPECT_EQ(elementTotal(MultiIndex<3>{huge, huge, 2}), std::numeric_limits<std::uint64_t>::max());
}

/// Makes elements from their indices and records the requests.
class IndexCreator final : public Nimbra::ElementCreator<double> {
 public:
  ElementCreator<double>* slice(std::uint64_t index) override {
    asked += "slice " + std::to_string(index) + ", ";
    return this;
  }
  double element(std::uint64_t index) override {
    asked += "element " + std::to_string(index);
    return 100.0 + static_cast<double>(index);
  }
  std::string asked;
};

TEST(Hyperslab, CreatorTakesTheIndexAsItIs) {
  IndexCreator creator;
  Nimbra::MultiArray<1, double> array; // no data: reading it would crash
  array.creator = &creator;
  array.start = 2;
  array.stride = 3;
  EXPECT_EQ(array.at(1), 101.0);
  EXPECT_EQ(array.element(1), 101.0);
}

TEST(Hyperslab, CreatorIsSlicedFromTheHighestIndexDown) {
  IndexCreator creator;
  Nimbra::MultiArray<4, double> array;
  array.creator = &creator;
  EXPECT_EQ(array.at(1, 2, 3, 4), 101.0);
  EXPECT_EQ(creator.asked, "slice 4, slice 3, slice 2, element 1");
}

} // namespace
