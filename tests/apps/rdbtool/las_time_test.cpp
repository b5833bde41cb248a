// SPDX-License-Identifier: BSD-3-Clause
// The time stamps and the time base of imported LAS points.
#include "tests/apps/rdbtool/database_rows.h"
#include "tests/apps/rdbtool/las_file.h"
#include "tests/apps/rdbtool/tool_run.h"
#include "tests/support/temp_dir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace {

using support::DatabaseRows;
using support::LasFile;
using support::LasPoint;
using testing::ElementsAre;
using testing::HasSubstr;

std::string timeBase(const std::string& day) {
  return R"({"epoch":")" + day + R"(T00:00:00+00:00","source":"GNSS","system":"GPS"})";
}

class LasTime : public testing::Test {
 protected:
  LasFile& givenStamps(const std::vector<double>& stamps) {
    for (const double stamp : stamps) {
      LasPoint point;
      point.gpsTime = stamp;
      file.with(point);
    }
    return file;
  }
  DatabaseRows imported(std::vector<std::string> more = {}) {
    std::vector<std::string> arguments = {"import", file.writeTo(folder.path("in.las")), "-o",
                                          folder.path("out.rdbx")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    run = support::runTool(arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    return DatabaseRows(folder.path("out.rdbx"));
  }
  support::TempDir folder;
  LasFile file{2, 1};
  support::Run run;
};

TEST_F(LasTime, EpochIsTheStampsDayInTheWeekOfCreation) {
  givenStamps({259210.5, 259220.5});
  file.creationYear = 2015;
  file.creationDay = 53; // Sunday, 22 February
  const DatabaseRows rows = imported();
  EXPECT_THAT(rows.column("riegl.timestamp"), ElementsAre(259210.5, 259220.5));
  EXPECT_EQ(rows.item("riegl.time_base"), timeBase("2015-02-25")); // a Wednesday, day 3
}

TEST_F(LasTime, AFileWithoutCreationDateTakesTheFirstGpsWeek) {
  givenStamps({86400.0});
  EXPECT_EQ(imported().item("riegl.time_base"), timeBase("1980-01-07"));
}

TEST_F(LasTime, AGivenDateSetsTheWeek) {
  givenStamps({604799.0});
  file.creationYear = 2015;
  file.creationDay = 53;
  EXPECT_EQ(imported({"--date", "2024-02-29"}).item("riegl.time_base"), timeBase("2024-03-02"));
}

TEST_F(LasTime, TheLastDayOfALeapYearIsACreationDay) {
  givenStamps({10.0});
  file.creationYear = 2024;
  file.creationDay = 366; // Tuesday, 31 December; its Sunday is the 29th
  EXPECT_EQ(imported().item("riegl.time_base"), timeBase("2024-12-29"));
}

TEST_F(LasTime, AdjustedStampsBecomeSecondsOfTheWeekExactly) {
  const double stamp = 206946275.5600586;
  givenStamps({stamp, stamp + 1});
  file.globalEncoding = 1;
  const DatabaseRows rows = imported();
  // 1206946275.56 seconds are 1995 weeks and 370275.56 seconds: Thursday of the week of 1 April 2018.
  EXPECT_THAT(rows.column("riegl.timestamp"), ElementsAre(stamp - 206576000, stamp - 206575999));
  EXPECT_EQ(rows.item("riegl.time_base"), timeBase("2018-04-05"));
}

TEST_F(LasTime, AdjustedStampsBeforeTheFirstStaySeparateDays) {
  givenStamps({206946275.5, 206860645.25});
  file.globalEncoding = 1;
  EXPECT_THAT(imported().column("riegl.timestamp"), ElementsAre(370275.5, 284645.25));
}

TEST_F(LasTime, TheAdjustedBitMeansNothingBeforeVersion12) {
  file.minor = 1;
  file.globalEncoding = 1;
  givenStamps({259210.5});
  EXPECT_THAT(imported().column("riegl.timestamp"), ElementsAre(259210.5));
}

TEST_F(LasTime, StampsOutsideTheWeekAreKeptAndReported) {
  givenStamps({604800.0});
  EXPECT_THAT(imported().column("riegl.timestamp"), ElementsAre(604800.0));
  EXPECT_THAT(run.err, HasSubstr("expected GPS seconds of the week, found stamps outside 0 to 604800"));
}

TEST_F(LasTime, AdjustedStampsThatAreNoNumbersAreKeptAndReported) {
  givenStamps({std::numeric_limits<double>::quiet_NaN()});
  file.globalEncoding = 1;
  EXPECT_TRUE(std::isnan(imported().column("riegl.timestamp")[0]));
  EXPECT_THAT(run.err, HasSubstr("expected adjusted GPS time, found a first stamp of nan"));
}

} // namespace
