// SPDX-License-Identifier: BSD-3-Clause
// Pins the effects of a trajectory's time base: two warnings, an attribute, and no change of a time stamp.
#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/loader/trajectory/flight.h"

namespace {

using namespace flight;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string explanation =
    "https://www.cnmoc.usff.navy.mil/Our-Commands/United-States-Naval-Observatory/Precise-Time-Department/"
    "Global-Positioning-System/USNO-GPS-Time-Transfer/Leap-Seconds/";
const std::string firstWarning =
    "pofx2nimbra: !!!!!!!!!!!!!!!!!!!\nWARNING! Time base is GPS instead of UTC. RXP files and trajectory "
    "need to be in the same time scheme (Either both in UTC or GPS).If you have rxp in UTC and trajectory in "
    "GPS-Time you need to shift trajectory of 18 sec. (This may change: " +
    explanation + " )\n!!!!!!!!!!!!!";
const std::string secondWarning =
    "WARNING:  Cheack if leap seconds (current 18.0 seconds) are still valid. For example: " + explanation;

TEST_F(Load, WithoutATimeBaseCountsAsUtc) {
  givenFlight(3);
  ASSERT_EQ(load(), "");
  EXPECT_THAT(console.lines(), IsEmpty());
  EXPECT_THAT(leapSecondsAdded(), ElementsAre(0));
}

TEST_F(Load, InUtcWritesNoWarning) {
  givenFlight(3, utcTimeBase);
  ASSERT_EQ(load(), "");
  EXPECT_THAT(console.lines(), IsEmpty());
  EXPECT_THAT(leapSecondsAdded(), ElementsAre(0));
}

TEST_F(Load, InGpsTimeWritesTwoWarningsAndGoesOn) {
  givenFlight(3, gpsTimeBase);
  ASSERT_EQ(load(), "");
  EXPECT_THAT(console.lines(), ElementsAre(firstWarning, secondWarning));
  EXPECT_THAT(leapSecondsAdded(), ElementsAre(1));
  EXPECT_EQ(values("GPSTime", "flight_Fragment_0"), valuesOf(timeOf, 3));
}

TEST_F(Load, WithATimeBaseOfTheWrongFormIsReportedAsGps) {
  givenFlight(3, {{"riegl.time_base", "no json"}});
  ASSERT_EQ(load(), "");
  EXPECT_THAT(console.lines(), ElementsAre("parseDate: invalid json file ", firstWarning, secondWarning));
  EXPECT_THAT(leapSecondsAdded(), ElementsAre(1));
}

TEST_F(Load, WithAnEpochThatIsNoNumberEndsWithThePath) {
  givenFlight(3, {{"riegl.time_base", R"({"epoch":"a-b-c","system":"UTC"})"}});
  givenLeverArm("leverarm:1:2:3\nmisalignment:4:5:6\n");
  EXPECT_EQ(load(), "stoi For File " + path);
  EXPECT_TRUE(gridIsUntouched());
}

TEST_F(Load, WithADateThatDoesNotExistGoesOn) {
  givenFlight(3, {{"riegl.time_base", R"({"epoch":"2023-99-99T00:00:00Z","system":"UTC"})"}});
  EXPECT_EQ(load(), "");
}

TEST_F(Load, DoesNotLookAtTheTextsOfTheOtherItems) {
  givenFlight(3, {{"riegl.geo_tag", "no json"}, {"riegl.trajectory_info", "none either"}});
  EXPECT_EQ(load(), "");
  EXPECT_THAT(console.lines(), IsEmpty());
}

TEST_F(Load, SetsTheLeapSecondFlagOfTheTimeColumnOnly) {
  givenFlight(3, gpsTimeBase);
  ASSERT_EQ(load(), "");
  for (const std::string& name : fieldsInOrder) {
    EXPECT_EQ(support::attributeNames(field(name)->attributes()).size(), name == "GPSTime" ? 1u : 0u) << name;
  }
}

TEST_F(Load, LeavesRebasingToTheCallback) {
  givenFlight(3, utcTimeBase);
  std::string error;
  callback = [&](const ChunkPointer& chunk, const std::string& name, const bool& isUTC) {
    Riegl::modifyGPSTime(error, 4, chunk, name, isUTC); // 345600.5 s is on day 4 of the week
  };
  ASSERT_EQ(load(), "");
  EXPECT_EQ(error, "");
  EXPECT_EQ(values("GPSTime", "flight_Fragment_0"), valuesOf(timeOf, 3));
}

TEST_F(Load, IsNotStoppedByAFailedRebasing) {
  givenFlight(3, utcTimeBase);
  std::string error;
  callback = [&](const ChunkPointer& chunk, const std::string& name, const bool& isUTC) {
    Riegl::modifyGPSTime(error, 2, chunk, name, isUTC); // not the day of the stamps
  };
  EXPECT_EQ(load(), "");
  EXPECT_NE(error, "");
  EXPECT_EQ(values("GPSTime", "flight_Fragment_0"), valuesOf(timeOf, 3));
}

} // namespace
