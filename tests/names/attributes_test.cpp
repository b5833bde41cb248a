// SPDX-License-Identifier: BSD-3-Clause
// Compares the table of attributes with the independent list of columns.
#include "names/names.h"
#include "tests/loader/pointcloud/expected_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <utility>

namespace {

using pointcloudTest::ExpectedRow;
using pointcloudTest::expectedRows;

using ValueRange = std::pair<unsigned, unsigned>;

/// Values per record, from the fewest to the most.
ValueRange expectedValues(const ExpectedRow& row) {
  if (row.attribute == "riegl.hydro_intersection_point" ||
      row.attribute == "riegl.hydro_intersection_normal") {
    return {1, 3};
  }
  const unsigned count = row.type == "RGBA" ? 4 : row.type == "point" || row.type == "vector" ? 3 : 1;
  return {count, count};
}

class Attributes : public testing::TestWithParam<ExpectedRow> {};

TEST_P(Attributes, HaveTheValuesPerRecordThatTheirColumnIsMadeFor) {
  const Riegl::Attribute* const attribute = Riegl::attributes::find(GetParam().attribute);
  ASSERT_NE(attribute, nullptr) << GetParam().attribute << " is missing from the table";
  EXPECT_EQ(ValueRange(attribute->leastValues, attribute->mostValues), expectedValues(GetParam()));
}

TEST_P(Attributes, HaveTheDataTypeOfTheirElement) {
  const Riegl::Attribute* const attribute = Riegl::attributes::find(GetParam().attribute);
  ASSERT_NE(attribute, nullptr) << GetParam().attribute << " is missing from the table";
  EXPECT_EQ(Riegl::dataTypeOf(attribute->element), static_cast<unsigned>(GetParam().dataType));
}

INSTANTIATE_TEST_SUITE_P(OfTheTable, Attributes, testing::ValuesIn(expectedRows()),
                         [](const auto& tested) { return std::to_string(tested.index + 1); });

TEST(AttributeTable, HasTheAttributesOfTheColumnsAndNoOthers) {
  std::set<std::string> expected, found;
  for (const ExpectedRow& row : expectedRows()) {
    expected.insert(row.attribute);
  }
  for (const Riegl::Attribute& attribute : Riegl::attributes::table) {
    found.insert(attribute.name);
  }
  EXPECT_THAT(found, testing::ContainerEq(expected));
}

TEST(AttributeTable, FindsWholeNamesOnly) {
  for (const char* name : {"", "riegl.", "xyz", "riegl.xy", "riegl.xyz_", "Riegl.xyz", "riegl.own"}) {
    EXPECT_EQ(Riegl::attributes::find(name), nullptr) << name;
  }
  EXPECT_EQ(Riegl::attributes::find({"riegl.xyz\0", 10}), nullptr);
}

TEST(AttributeTable, SizesBuffersByTheMostValues) {
  EXPECT_EQ(Riegl::attributes::named("riegl.amplitude").elementsPerRecord(), 1U);
  EXPECT_EQ(Riegl::attributes::named("riegl.xyz").elementsPerRecord(), 1U);
  EXPECT_EQ(Riegl::attributes::named("riegl.rgba").elementsPerRecord(), 1U);
  EXPECT_EQ(Riegl::attributes::named("riegl.hydro_intersection_point").elementsPerRecord(), 3U);
}

} // namespace
