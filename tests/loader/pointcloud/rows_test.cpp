// SPDX-License-Identifier: BSD-3-Clause
// Every column of the import, one by one, over the scripted client.
#include "tests/loader/pointcloud/expected_rows.h"
#include "tests/loader/pointcloud/scripted_scan.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace {

using pointcloudTest::ExpectedRow;
using pointcloudTest::expectedRows;
using pointcloudTest::ScriptedScan;
using scripted::filledWith;
using support::chart;
using support::field;
using support::fieldNames;
using support::scanner;

/// The call that binds a row's buffer.
std::string bindOf(const ExpectedRow& row) {
  const std::string bound = row.attribute == "riegl.rgba" ? "riegl.direction_medium" : row.attribute;
  return "bind(" + bound + "," + std::to_string(row.dataType) + ",0)";
}

/// A database of two records with the row's attribute only (and the attribute that its binding needs).
class EveryRow : public ScriptedScan, public testing::WithParamInterface<ExpectedRow> {
 protected:
  EveryRow() {
    givenColumns({GetParam().attribute.c_str()});
    if (GetParam().attribute == "riegl.rgba") {
      givenColumns({"riegl.direction_medium"});
    }
    script.blocks = {2};
  }

  std::string expectedBind() const { return bindOf(GetParam()); }

  Nimbra::Field::Pointer theField() const {
    return field(grid, GetParam().field, GetParam().attribute == "riegl.xyz_socs" ? scanner : chart);
  }
};

std::string elementName(const std::string& type) {
  if (type == "point" || type == "vector") {
    return "Quillon::Coordinates<Quillon::Cartesian3D, double>::" + type;
  }
  return type == "RGBA"
             ? "Quillon::DomainVector<Quillon::Vector<unsigned char, 4>, Quillon::RGBA, unsigned char>"
             : type;
}

TEST_P(EveryRow, BecomesItsFieldInItsElementType) {
  ASSERT_EQ(load(true), "");
  ASSERT_TRUE(theField());
  const auto array = theField()->array("Fragment_0");
  ASSERT_TRUE(array);
  EXPECT_EQ(array->typeIndex().typeName, elementName(GetParam().type));
  EXPECT_EQ(array->elementCount(), 2U);
  EXPECT_EQ(script.callsThatBegin(expectedBind()).size(),
            GetParam().attribute == "riegl.target_count" || GetParam().attribute == "riegl.raw_range" ? 4U
                                                                                                      : 2U);
}

TEST_P(EveryRow, IsAskedForButLeftOutWithoutAllAttributesWhereItIsMarked) {
  ASSERT_EQ(load(false), "");
  EXPECT_FALSE(script.callsThatBegin("exists(" + GetParam().attribute + ")").empty());
  EXPECT_EQ(static_cast<bool>(theField()), !GetParam().onlyWithAll);
  EXPECT_EQ(script.callsThatBegin(expectedBind()).empty(), GetParam().onlyWithAll);
}

INSTANTIATE_TEST_SUITE_P(OfTheImport, EveryRow, testing::ValuesIn(expectedRows()), [](const auto& tested) {
  std::string name = tested.param.attribute.substr(6) + "_as_" + tested.param.field;
  for (char& character : name) {
    character = std::isalnum(static_cast<unsigned char>(character)) != 0 ? character : '_';
  }
  return name;
});

class Rows : public ScriptedScan {
 protected:
  /// A database with all attributes except the time stamps of shots, which exclude those of points.
  void givenEveryAttribute() {
    for (const ExpectedRow& row : expectedRows()) {
      if (row.attribute != "riegl.shot_timestamp_hr") {
        givenColumns({row.attribute.c_str()});
      }
    }
    script.blocks = {2};
  }
};

TEST_F(Rows, AreSixtyOneOfWhichThirteenNeedAllAttributes) {
  int marked = 0;
  for (const ExpectedRow& row : expectedRows()) {
    marked += row.onlyWithAll ? 1 : 0;
  }
  EXPECT_EQ(expectedRows().size(), 61U);
  EXPECT_EQ(marked, 13);
}

TEST_F(Rows, MakeTheirFieldsInTheirOrder) {
  givenEveryAttribute();
  ASSERT_EQ(load(true), "");
  std::vector<std::string> expected;
  for (const ExpectedRow& row : expectedRows()) {
    const bool again = row.attribute == "riegl.xyz_socs" || row.attribute == "riegl.pof_xyz";
    if (!again && row.attribute != "riegl.shot_timestamp_hr") {
      expected.push_back(row.field);
    }
  }
  EXPECT_EQ(fieldNames(grid), expected);
  EXPECT_EQ(fieldNames(grid, scanner), std::vector<std::string>{"Positions"});
}

/// The calls of the client during one binding of a database with every attribute.
std::vector<std::string> callsOfABinding() {
  std::vector<std::string> calls;
  for (const ExpectedRow& row : expectedRows()) {
    const int times = row.attribute == "riegl.raw_range" ? 2 : 1;
    for (int time = 0; time < times; ++time) {
      calls.insert(calls.end(), {"pointAttribute()", "exists(" + row.attribute + ")"});
      if (row.attribute != "riegl.shot_timestamp_hr") {
        calls.push_back(bindOf(row));
      }
    }
  }
  return calls;
}

TEST_F(Rows, AskTheCatalogueAnewAndAreBoundOneByOne) {
  givenEveryAttribute();
  script.blocks.clear();
  ASSERT_EQ(load(true), "");
  const std::vector<std::string>& calls = script.calls;
  const auto first = std::find(calls.begin(), calls.end(), "select()") + 1;
  EXPECT_EQ(std::vector<std::string>(first, std::find(first, calls.end(), "next(5000000)")),
            callsOfABinding());
}

TEST_F(Rows, ArePublishedInTheirOrder) {
  givenEveryAttribute();
  ASSERT_EQ(load(true), "");
  std::vector<std::uint64_t> serials;
  for (const ExpectedRow& row : expectedRows()) {
    if (row.attribute != "riegl.shot_timestamp_hr" && row.attribute != "riegl.xyz") {
      const auto made = field(grid, row.field, row.attribute == "riegl.xyz_socs" ? scanner : chart);
      ASSERT_TRUE(made) << row.attribute << " has no row";
      serials.push_back(made->array("Fragment_0")->serialNumber());
    }
  }
  EXPECT_TRUE(std::is_sorted(serials.begin(), serials.end()));
}

TEST_F(Rows, HaveRoomForOneBlockExactly) {
  const std::int64_t before = Torvel::ChunkBase::TotalMemsize;
  std::int64_t bytes = 0;
  givenColumns({"riegl.raw_range"});
  script.columns["riegl.amplitude"] = [&](void*, unsigned int, std::uint64_t) {
    bytes = Torvel::ChunkBase::TotalMemsize - before;
  };
  script.blocks = {1};
  ASSERT_EQ(load(), "");
  EXPECT_EQ(bytes, 120000000 + 40000000 + 20000000); // Positions (always), RawRange (once), Amplitude
}

TEST_F(Rows, OfPositionsWithoutCoordinatesHaveABufferThatIsNotBound) {
  givenColumns({"riegl.amplitude"});
  script.blocks = {3};
  ASSERT_EQ(load(), "");
  EXPECT_TRUE(script.callsThatBegin("bind(riegl.xyz").empty());
  EXPECT_EQ(field(grid, "Positions")->array("Fragment_0")->elementCount(), 3U);
}

TEST_F(Rows, OfPositionsWithoutCoordinatesHaveABufferOfTheirOwnForEveryBlock) {
  script.blocks = {3, 2};
  ASSERT_EQ(load(), "");
  const auto first = field(grid, "Positions")->array("Fragment_0");
  const auto second = field(grid, "Positions")->array("Fragment_1");
  EXPECT_EQ(support::chunkOf<Quillon::PhysicalSpace::point>(field(grid, "Positions"), "Fragment_0")->size(),
            3U);
  EXPECT_EQ(second->elementCount(), 2U);
  EXPECT_NE(first->rawData(), second->rawData());
}

TEST_F(Rows, OfColourWithoutDirectionEndTheLoadByTheClient) {
  givenColumns({"riegl.rgba"});
  script.blocks = {3};
  EXPECT_EQ(load(), "attribute not found (riegl.direction_medium)");
  EXPECT_TRUE(field(grid, "RGBA"));
}

TEST_F(Rows, OfTheReturnCountFillTheBufferThatWasBoundLast) {
  script.columns["riegl.target_count"] = [](void* buffer, unsigned int count, std::uint64_t) {
    std::memset(buffer, 7, count);
  };
  script.blocks = {2};
  ASSERT_EQ(load(), "");
  using Bytes = std::vector<unsigned char>;
  EXPECT_EQ(support::values<unsigned char>(field(grid, "NumberOfReturns"), "Fragment_0"), (Bytes{0, 0}));
  EXPECT_EQ(support::values<unsigned char>(field(grid, "TargetCount"), "Fragment_0"), (Bytes{7, 7}));
}

class Hydrography : public ScriptedScan,
                    public testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(Hydrography, TakesThreeValuesPerRecordAndKeepsTheFirstOnes) {
  script.columns[GetParam().first] = [](void* buffer, unsigned int count, std::uint64_t) {
    std::iota(static_cast<double*>(buffer), static_cast<double*>(buffer) + 3 * count, 0.0);
  };
  script.blocks = {5000000};
  ASSERT_EQ(load(), "");
  const auto kept = support::chunkOf<double>(field(grid, GetParam().second), "Fragment_0");
  ASSERT_EQ(kept->size(), 5000000U);
  EXPECT_GE(kept->values().capacity(), 15000000U);
  EXPECT_EQ(kept->values()[4], 4.0);
  EXPECT_EQ(kept->values().back(), 4999999.0);
}

INSTANTIATE_TEST_SUITE_P(
    OfPointAndNormal, Hydrography,
    testing::Values(std::pair("riegl.hydro_intersection_point", "HydroIntersectionPoint"),
                    std::pair("riegl.hydro_intersection_normal", "HydroIntersectionNormal")));

TEST_F(Rows, OfTheRawRangeFillTheBufferThatIsPublished) {
  script.columns["riegl.raw_range"] = filledWith(7.5);
  script.blocks = {2};
  ASSERT_EQ(load(), "");
  EXPECT_EQ(support::values<double>(field(grid, "RawRange"), "Fragment_0"), (std::vector<double>{7.5, 7.5}));
}

TEST_F(Rows, OfBothCoordinateSystemsLeaveThePlatformsArrayLast) {
  script.columns["riegl.xyz"] = filledWith(1, 3);
  script.columns["riegl.pof_xyz"] = filledWith(2, 3);
  script.columns["riegl.xyz_socs"] = filledWith(3, 3);
  script.blocks = {1};
  ASSERT_EQ(load(), "");
  using Point = Quillon::PhysicalSpace::point;
  EXPECT_EQ(support::values<Point>(field(grid, "Positions"), "Fragment_0").at(0), Point(2, 2, 2));
  EXPECT_EQ(field(grid, "Positions")->fragments().size(), 1U);
  EXPECT_EQ(support::values<Point>(field(grid, "Positions", scanner), "Fragment_0").at(0), Point(3, 3, 3));
}

TEST_F(Rows, UnknownToTheImportAreIgnoredWithoutAMessage) {
  givenColumns({"riegl.unheard_of"});
  script.blocks = {1};
  EXPECT_EQ(load(true), "");
  EXPECT_EQ(fieldNames(grid), std::vector<std::string>{"Positions"});
}

} // namespace
