// SPDX-License-Identifier: BSD-3-Clause
// The attributes of imported SBET trajectories, and the refused ones.
#include "tests/apps/rdbtool/database_rows.h"
#include "tests/apps/rdbtool/tool_run.h"
#include "tests/support/temp_dir.h"

#include <array>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <tuple>

namespace {

using support::DatabaseRows;
using testing::DoubleEq;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;

using Record = std::array<double, 17>;
constexpr double quarter = std::numbers::pi / 2;

class Sbet : public testing::Test {
 protected:
  support::Run importing(const std::vector<Record>& records, std::vector<std::string> more = {},
                         const std::string& tail = "") {
    std::ofstream file(folder.path("in.sbet"), std::ios::binary);
    file.write(reinterpret_cast<const char*>(records.data()),
               static_cast<std::streamsize>(records.size() * sizeof(Record)));
    file << tail;
    file.close();
    more.insert(more.begin(), {"import", folder.path("in.sbet"), "-o", folder.path("out.pofx")});
    return support::runTool(more);
  }
  DatabaseRows imported(const std::vector<Record>& records, const std::vector<std::string>& more = {}) {
    const support::Run run = importing(records, more);
    EXPECT_EQ(run.status, 0) << run.err;
    return DatabaseRows(folder.path("out.pofx"));
  }
  support::TempDir folder;
};

Record recordAt(double seconds, double latitude, double longitude) {
  Record record{};
  record[0] = seconds;
  record[1] = latitude;
  record[2] = longitude;
  return record;
}

Record recordWith(std::size_t place, double value) {
  Record record = recordAt(1, 0, 0);
  record[place] = value;
  return record;
}

TEST_F(Sbet, AnglesBecomeDegreesAndTheRestStays) {
  Record record = recordAt(400825.5, quarter / 2, -quarter);
  record[3] = 6991.5;
  record[7] = quarter / 90;
  record[8] = -quarter / 45;
  const DatabaseRows rows = imported({record});
  EXPECT_THAT(rows.column("riegl.pof_timestamp"), ElementsAre(400825.5));
  EXPECT_THAT(rows.column("riegl.pof_latitude"), ElementsAre(DoubleEq(45)));
  EXPECT_THAT(rows.column("riegl.pof_longitude"), ElementsAre(DoubleEq(-90)));
  EXPECT_THAT(rows.column("riegl.pof_height"), ElementsAre(6991.5));
  EXPECT_THAT(rows.column("riegl.pof_roll"), ElementsAre(DoubleEq(1)));
  EXPECT_THAT(rows.column("riegl.pof_pitch"), ElementsAre(DoubleEq(-2)));
}

TEST_F(Sbet, YawIsTheHeadingLessTheWanderAngleInAFullCircle) {
  std::vector<Record> records;
  for (const auto& [heading, wander] : {std::pair{1.0, 0.25}, {0.0, 0.5}, {5.0, -4.0}, {-1e-18, 0.0}}) {
    records.push_back(recordAt(0, 0, 0));
    records.back()[9] = heading * quarter;
    records.back()[10] = wander * quarter;
  }
  EXPECT_THAT(imported(records).column("riegl.pof_yaw"),
              ElementsAre(DoubleNear(67.5, 1e-12), DoubleNear(315, 1e-12), DoubleNear(90, 1e-12), 0));
}

TEST_F(Sbet, PathLengthIsTheSumOfStraightPieces) {
  // A quarter of the equator and then a half meridian, as chords: sqrt(2) a, and sqrt(a^2 + b^2).
  const DatabaseRows rows = imported({recordAt(0, 0, 0), recordAt(1, 0, quarter), recordAt(2, quarter, 0)});
  const double a = 6378137;
  const double b = 6356752.314245179;
  EXPECT_THAT(rows.column("riegl.pof_path_length"),
              ElementsAre(0, DoubleNear(std::sqrt(2) * a, 1e-6),
                          DoubleNear(std::sqrt(2) * a + std::hypot(a, b), 1e-6)));
}

TEST_F(Sbet, EpochAgreesWithTheFirstStamp) {
  EXPECT_THAT(imported({recordAt(400825, 0, 0)}, {"--date", "2012-11-18"}).item("riegl.time_base"),
              R"({"epoch":"2012-11-22T00:00:00+00:00","source":"GNSS","system":"GPS"})");
}

TEST_F(Sbet, AnEmptyFileIsATrajectoryOfNoRecords) {
  const DatabaseRows rows = imported({});
  EXPECT_EQ(rows.records(), 0U);
  EXPECT_EQ(rows.names().size(), 8U);
}

TEST_F(Sbet, ALengthBetweenRecordsIsRefusedWithTheWholeOnes) {
  const support::Run run = importing({recordAt(0, 0, 0), recordAt(1, 0, 0)}, {}, "x");
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err,
              HasSubstr("expected a multiple of 136 bytes, found 273, which is 2 whole records and 1 bytes"));
}

TEST_F(Sbet, ValuesThatAreNoAnglesAreRefusedWithTheirRecord) {
  const double none = std::numeric_limits<double>::quiet_NaN();
  for (const auto& [place, value, found] :
       std::vector<std::tuple<std::size_t, double, std::string>>{{0, none, "time nan"},
                                                                 {1, 2, "latitude 2"},
                                                                 {1, none, "latitude nan"},
                                                                 {2, 7, "longitude 7"},
                                                                 {7, none, "roll nan"},
                                                                 {10, none, "wander angle nan"}}) {
    const support::Run run = importing({recordAt(0, 0, 0), recordWith(place, value)});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("finite values and angles in radians, found " + found + " in record 1"));
    EXPECT_FALSE(std::ifstream(folder.path("out.pofx")).is_open());
  }
}

TEST_F(Sbet, AStampOutsideTheWeekIsReportedInFull) {
  EXPECT_THAT(importing({recordAt(604800.25, 0, 0)}).err,
              HasSubstr("expected GPS seconds of the week, found a first stamp of 604800.25; the stamps are "
                        "kept as they are"));
}

TEST_F(Sbet, TheFormatCanBeForced) {
  const support::Run run = importing({recordAt(0, 0, 0)}, {"--format", "las"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("expected the signature LASF"));
}

} // namespace
