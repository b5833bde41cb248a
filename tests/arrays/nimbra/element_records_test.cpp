// SPDX-License-Identifier: BSD-3-Clause
// Pins the record of each element type, one row per type.
#include "arrays/nimbra/element_records.h"

#include <gtest/gtest.h>
#include <ostream>
#include <vector>

namespace {

struct Row {
  const char* name;
  Nimbra::NimbraTypeIndex found;
  int components, elementBytes, vectorFlagA, vectorFlagB;
  const char* scalar;
  int componentBytes;
  const char* domain;
  int dimensions;

  friend void PrintTo(const Row& test, std::ostream* stream) { *stream << test.name; }
};

class ElementRecords : public testing::TestWithParam<Row> {};

TEST_P(ElementRecords, HoldTheNumbersOfTheType) {
  const Row& row = GetParam();
  EXPECT_EQ(row.found.components, row.components);
  EXPECT_EQ(row.found.elementBytes, row.elementBytes);
  EXPECT_EQ(row.found.vectorFlagA, row.vectorFlagA);
  EXPECT_EQ(row.found.vectorFlagB, row.vectorFlagB);
  EXPECT_EQ(row.found.componentBytes, row.componentBytes);
  EXPECT_EQ(row.found.dimensions, row.dimensions);
}

TEST_P(ElementRecords, HoldReadableNames) {
  EXPECT_EQ(GetParam().found.typeName, GetParam().name);
  EXPECT_EQ(GetParam().found.componentName, GetParam().scalar);
  EXPECT_EQ(GetParam().found.chartName, GetParam().domain);
}

using Nimbra::elementRecord;

INSTANTIATE_TEST_SUITE_P(
    Types, ElementRecords,
    testing::Values(
        Row{"double", elementRecord<double>(), 1, 8, 0, 0, "double", 8, "void", 0},
        Row{"Quillon::Coordinates<Quillon::Cartesian3D, double>::point",
            elementRecord<Quillon::PhysicalSpace::point>(), 3, 24, 0, 0, "double", 8, "Quillon::Cartesian3D",
            3},
        Row{"Quillon::Coordinates<Quillon::Cartesian3D, double>::vector",
            elementRecord<Quillon::PhysicalSpace::vector>(), 3, 24, 1, 1, "double", 8, "Quillon::Cartesian3D",
            3},
        Row{"float", elementRecord<float>(), 1, 4, 0, 0, "float", 4, "void", 0},
        Row{"short", elementRecord<short>(), 1, 2, 0, 0, "short", 2, "void", 0},
        Row{"unsigned char", elementRecord<unsigned char>(), 1, 1, 0, 0, "unsigned char", 1, "void", 0},
        Row{"Quillon::DomainVector<Quillon::Vector<unsigned char, 4>, Quillon::RGBA, unsigned char>",
            elementRecord<Quillon::ColourRGBA>(), 4, 4, 1, 0, "unsigned char", 1, "Quillon::RGBA", 4},
        Row{"unsigned short", elementRecord<unsigned short>(), 1, 2, 0, 0, "unsigned short", 2, "void", 0},
        Row{"unsigned long long", elementRecord<unsigned long long>(), 1, 8, 0, 0, "unsigned long long", 8,
            "void", 0},
        Row{"int", elementRecord<int>(), 1, 4, 0, 0, "int", 4, "void", 0},
        Row{"unsigned int", elementRecord<unsigned int>(), 1, 4, 0, 0, "unsigned int", 4, "void", 0}));

TEST(ElementRecord, FieldsKeepTheFixedOrder) {
  const auto [components, elementBytes, vectorFlagA, vectorFlagB, componentBytes, typeName, componentName,
              chartName, dimensions] = elementRecord<Quillon::ColourRGBA>();
  EXPECT_EQ(
      (std::vector<int>{components, elementBytes, vectorFlagA, vectorFlagB, componentBytes, dimensions}),
      (std::vector<int>{4, 4, 1, 0, 1, 4}));
  EXPECT_EQ(typeName, Torvel::Typename(typeid(Quillon::ColourRGBA)));
  EXPECT_EQ(componentName, "unsigned char");
  EXPECT_EQ(chartName, "Quillon::RGBA");
}

TEST(ElementTypes, AreElevenPlainSequencesOfScalars) {
  static_assert(std::tuple_size_v<Nimbra::ElementTypes> == 11);
  static_assert(sizeof(Quillon::PhysicalSpace::point[2]) == 6 * sizeof(double));
  static_assert(sizeof(Quillon::PhysicalSpace::vector[2]) == 6 * sizeof(double));
  static_assert(sizeof(Quillon::ColourRGBA[2]) == 8);
  static_assert(std::is_trivially_copyable_v<Quillon::PhysicalSpace::vector>);
  static_assert(std::is_base_of_v<Quillon::RGB, Quillon::RGBA>);
  const Quillon::PhysicalSpace::vector v(1, 2, 3);
  EXPECT_EQ(reinterpret_cast<const double*>(&v)[2], 3.0);
}

} // namespace
