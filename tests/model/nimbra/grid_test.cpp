// SPDX-License-Identifier: BSD-3-Clause
// Grid, representations and the slots of fields.
#include "tests/support/grid.h"

#include "arrays/nimbra/mem_array.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

using Nimbra::Field;
using Nimbra::Grid;
using Nimbra::Representation;
using support::fieldNames;
using support::representationNames;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

Nimbra::FieldProxy namedField(Representation& representation, const std::string& name) {
  return representation.makeField(representation.makeFieldID(name), nullptr, nullptr);
}

Field::Pointer fieldIn(const Nimbra::FieldProxy& proxy) {
  return static_cast<Field::Pointer&>(proxy);
}

TEST(Grids, NewOneIsEmpty) {
  const Grid grid;
  EXPECT_THAT(representationNames(grid), IsEmpty());
  EXPECT_TRUE(grid.attributes().empty());
}

TEST(Grids, RepresentationsStandInOrderOfCreation) {
  Grid grid;
  grid.makeCartesianRepresentation(3, "ScannerCoordinateSystem", 0);
  grid.makeCartesianRepresentation(3, "StandardCartesianChart3D", 0);
  EXPECT_THAT(representationNames(grid), ElementsAre("ScannerCoordinateSystem", "StandardCartesianChart3D"));
}

TEST(Grids, ExistingRepresentationIsReturned) {
  Grid grid;
  Representation& made = grid.makeCartesianRepresentation(3, "chart", 0);
  EXPECT_EQ(&grid.makeCartesianRepresentation(3, "chart", 0), &made);
  EXPECT_EQ(grid.representations().size(), 1U);
  EXPECT_EQ(made.dimensions(), 3);
  EXPECT_EQ(made.name(), "chart");
}

TEST(Grids, RepresentationIsFoundByNameOrNull) {
  Grid grid;
  Representation& made = grid.makeCartesianRepresentation(3, "chart", 0);
  EXPECT_EQ(grid.getCartesianRepresentation("chart").get(), &made);
  EXPECT_EQ(grid.getCartesianRepresentation("elsewhere").get(), nullptr);
}

TEST(Grids, DefaultPlaceIsTheStandardChart) {
  Grid grid;
  const Field::Pointer field = fieldIn(grid["Amplitude"]);
  ASSERT_TRUE(field);
  EXPECT_THAT(representationNames(grid), ElementsAre("StandardCartesianChart3D"));
  EXPECT_EQ(grid.getCartesianRepresentation("StandardCartesianChart3D")->dimensions(), 3);
  EXPECT_EQ(grid.getCartesianRepresentation("StandardCartesianChart3D")->field("Amplitude").get(),
            field.get());
}

TEST(Grids, DefaultPlaceReturnsTheExistingField) {
  Grid grid;
  const Field::Pointer field = fieldIn(grid["Amplitude"]);
  EXPECT_EQ(fieldIn(grid["Amplitude"]).get(), field.get());
  EXPECT_NE(fieldIn(grid["Reflectance"]).get(), field.get());
}

TEST(Grids, AreHeldThroughTheirContainer) {
  Torvel::StrongPtr<Grid, Grid::Family> grid(new Grid);
  const Torvel::WeakPtr<Representation, Representation> chart(
      &grid->makeCartesianRepresentation(3, "chart", 0));
  EXPECT_TRUE(chart);
  grid = nullptr;
  EXPECT_FALSE(chart);
}

class Representations : public testing::Test {
 protected:
  Grid grid;
  Representation& chart = grid.makeCartesianRepresentation(3, "chart", 0);
};

TEST_F(Representations, IdentityOfANameIsMadeOnce) {
  const auto identity = chart.makeFieldID("GPSTime");
  EXPECT_EQ(chart.makeFieldID("GPSTime").get(), identity.get());
  EXPECT_NE(chart.makeFieldID("Positions").get(), identity.get());
  EXPECT_EQ(identity->name(), "GPSTime");
}

TEST_F(Representations, IdentityAloneMakesNoField) {
  chart.makeFieldID("GPSTime");
  EXPECT_EQ(chart.field("GPSTime").get(), nullptr);
}

TEST_F(Representations, FieldsStandInOrderOfCreation) {
  for (const char* name : {"Positions", "GPSTime", "Amplitude"}) {
    namedField(chart, name);
  }
  EXPECT_THAT(fieldNames(grid, "chart"), ElementsAre("Positions", "GPSTime", "Amplitude"));
}

TEST_F(Representations, ExistingFieldIsReturned) {
  const Field::Pointer first = fieldIn(namedField(chart, "Positions"));
  EXPECT_EQ(fieldIn(namedField(chart, "Positions")).get(), first.get());
  EXPECT_EQ(chart.fields().size(), 1U);
}

TEST_F(Representations, FieldStaysWhenItsProxyEnds) {
  { const Nimbra::FieldProxy proxy = namedField(chart, "Positions"); }
  EXPECT_TRUE(chart.field("Positions"));
}

TEST_F(Representations, AssignmentPutsAnotherFieldIntoTheSlot) {
  const Field::Pointer other(new Field(nullptr));
  namedField(chart, "Positions") = other;
  EXPECT_EQ(chart.field("Positions").get(), other.get());
}

TEST_F(Representations, FieldInItsSlotCanBeReplacedThroughTheReference) {
  const Field::Pointer other(new Field(nullptr));
  static_cast<Field::Pointer&>(namedField(chart, "Positions")) = other;
  EXPECT_EQ(chart.field("Positions").get(), other.get());
}

TEST_F(Representations, TwoHoldFieldsOverOneCollection) {
  const Field::Pointer first = fieldIn(namedField(chart, "Positions"));
  Representation& other = grid.makeCartesianRepresentation(3, "other", 0);
  namedField(other, "Positions") = new Field(first->fragmentIDCollection());
  const Field::Pointer second = other.field("Positions");
  EXPECT_NE(second.get(), first.get());
  EXPECT_EQ(second->makeFragmentID("Fragment_0").get(), first->makeFragmentID("Fragment_0").get());
}

TEST_F(Representations, NewFieldLiesOverTheCollectionThatIsPassed) {
  const Torvel::StrongPtr<Nimbra::FragmentIDCollection, Nimbra::FragmentIDCollection> shared(
      new Nimbra::FragmentIDCollection);
  const Field::Pointer field = fieldIn(chart.makeField(chart.makeFieldID("a"), shared, nullptr));
  EXPECT_EQ(field->fragmentIDCollection().get(), shared.get());
}

TEST_F(Representations, ArrayThatIsPassedBecomesTheDataOfTheNewField) {
  const Nimbra::MemBase::Pointer array(new Nimbra::MemArray<1, double>(3, nullptr));
  chart.makeField(chart.makeFieldID("a"), nullptr, array);
  EXPECT_EQ(chart.field("a")->array("").get(), array.get());
}

TEST_F(Representations, ForeignIdentityIsRefused) {
  Representation& other = grid.makeCartesianRepresentation(3, "other", 0);
  const auto foreign = other.makeFieldID("Positions");
  try {
    chart.makeField(foreign, nullptr, nullptr);
    FAIL() << "no failure";
  } catch (const std::invalid_argument& error) {
    EXPECT_STREQ(
        error.what(),
        "representation \"chart\": expected an identity that its makeFieldID gave, found another one");
  }
}

} // namespace
