// SPDX-License-Identifier: BSD-3-Clause
// Pins the content of the grid after the load of a small trajectory.
#include "tests/loader/trajectory/flight.h"

#include <ostream>

namespace {

using namespace flight;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(Load, PutsSixFieldsInTheDefaultPlaceInOrder) {
  givenFlight(3);
  EXPECT_EQ(load(), "");
  EXPECT_THAT(support::representationNames(grid), ElementsAre("StandardCartesianChart3D"));
  expectEveryFieldToHave({"flight_Fragment_0"});
}

TEST_F(Load, PublishesColumnsAsTheDatabaseHasThem) {
  givenFlight(3);
  ASSERT_EQ(load(), "");
  EXPECT_EQ(values("GPSTime", "flight_Fragment_0"), valuesOf(timeOf, 3));
  EXPECT_EQ(values("Roll", "flight_Fragment_0"), valuesOf(rollOf, 3));
  EXPECT_EQ(values("Pitch", "flight_Fragment_0"), valuesOf(pitchOf, 3));
  EXPECT_EQ(values("Yaw", "flight_Fragment_0"), valuesOf(yawOf, 3));
  EXPECT_EQ(values("PofPathLength", "flight_Fragment_0"), valuesOf(lengthOf, 3));
  EXPECT_EQ(positions("flight_Fragment_0").size(), 3u);
}

TEST_F(Load, LeavesAttitudesAloneInAProjectedSystem) {
  epsg = 32633;
  givenFlight(3);
  ASSERT_EQ(load(), "");
  EXPECT_EQ(values("Yaw", "flight_Fragment_0"), valuesOf(yawOf, 3));
  EXPECT_EQ(values("Roll", "flight_Fragment_0"), valuesOf(rollOf, 3));
}

TEST_F(Load, SharesOneFragmentIdentityAmongTheFields) {
  givenFlight(3);
  ASSERT_EQ(load(), "");
  const auto& identity = field("GPSTime")->fragments().front().identity;
  for (const std::string& name : fieldsInOrder) {
    EXPECT_EQ(&*field(name)->fragments().front().identity, &*identity) << name;
  }
}

TEST_F(Load, OfNoRecordsMakesFieldsWithoutFragments) {
  givenFlight(0);
  givenLeverArm("leverarm:1:2:3\nmisalignment:4:5:6\n");
  EXPECT_EQ(load(), "");
  expectEveryFieldToHave({});
  EXPECT_THAT(support::attributeNames(grid.attributes()), ElementsAre("LeverArm", "Misalignment"));
  EXPECT_THAT(support::attributeNames(field("GPSTime")->attributes()), IsEmpty());
}

TEST_F(Load, OfOneRecordGivesOneElement) {
  givenFlight(1);
  ASSERT_EQ(load(), "");
  EXPECT_THAT(values("GPSTime", "flight_Fragment_0"), ElementsAre(timeOf(0)));
  EXPECT_EQ(positions("flight_Fragment_0").size(), 1u);
}

TEST_F(Load, LeavesChunksToTheGridAlone) {
  givenFlight(3);
  ASSERT_EQ(load(), "");
  for (const std::string& name : fieldsInOrder) {
    const ChunkPointer chunk = field(name)->array("flight_Fragment_0")->chunkBase();
    EXPECT_EQ(chunk.counts()->strong(), 2) << name; // held by the array and by `chunk`
  }
}

TEST_F(Load, LeavesFieldsToTheGridAlone) {
  givenFlight(3);
  ASSERT_EQ(load(), "");
  for (const std::string& name : fieldsInOrder) {
    EXPECT_EQ(field(name).counts()->strong(), 2) << name; // held by the grid and by the temporary
  }
}

TEST_F(Load, ReleasesTheMemoryWithTheGrid) {
  givenFlight(3);
  givenLeverArm("leverarm:1:2:3\nmisalignment:4:5:6\n");
  const std::int64_t before = Torvel::ChunkBase::TotalMemsize;
  // The count keeps the bytes that a chunk loses when it is cut: five columns of doubles and one of points.
  constexpr std::int64_t cut = 8LL * (5000000 - 3);
  {
    Nimbra::Grid own;
    ASSERT_EQ(Riegl::pofx2nimbra(path, own, epsg, callback, leverArm, nullptr), "");
  }
  EXPECT_EQ(Torvel::ChunkBase::TotalMemsize - before, 8 * cut);
}

TEST_F(Load, StartsAgainAtFragmentZeroOnAFilledGrid) {
  givenFlight(3);
  ASSERT_EQ(load(), "");
  givenFlight(2);
  ASSERT_EQ(load(), "");
  expectEveryFieldToHave({"flight_Fragment_0"});
  EXPECT_EQ(values("Roll", "flight_Fragment_0"), valuesOf(rollOf, 2));
}

TEST_F(Load, KeepsWhatTheGridHeldBefore) {
  givenFlight(3);
  grid.makeCartesianRepresentation(3, "ScannerCoordinateSystem", 0);
  ASSERT_EQ(load(), "");
  EXPECT_THAT(support::representationNames(grid),
              ElementsAre("ScannerCoordinateSystem", "StandardCartesianChart3D"));
  EXPECT_THAT(support::fieldNames(grid, support::scanner), IsEmpty());
}

TEST_F(Load, NeedsNoCallback) {
  givenFlight(3);
  callback = nullptr;
  EXPECT_EQ(load(), "");
  EXPECT_EQ(values("GPSTime", "flight_Fragment_0"), valuesOf(timeOf, 3));
}

struct FileName {
  const char* file;
  const char* fragment;

  friend void PrintTo(const FileName& test, std::ostream* stream) {
    *stream << testing::PrintToString(std::string(test.file));
  }
};

class NamedFile : public Load, public testing::WithParamInterface<FileName> {};

TEST_P(NamedFile, BeginsTheNamesOfItsFragmentsWithItsStem) {
  path = directory.path(GetParam().file);
  givenFlight(1);
  ASSERT_EQ(load(), "");
  expectEveryFieldToHave({GetParam().fragment});
}

INSTANTIATE_TEST_SUITE_P(Load, NamedFile,
                         testing::Values(FileName{"trajectory.pofx", "trajectory_Fragment_0"},
                                         FileName{"two.dots.pofx", "two.dots_Fragment_0"},
                                         FileName{"noextension", "noextension_Fragment_0"},
                                         FileName{".pofx", ".pofx_Fragment_0"},
                                         FileName{"Überflug 1.pofx", "Überflug 1_Fragment_0"},
                                         FileName{"end.", "end_Fragment_0"}));

} // namespace
