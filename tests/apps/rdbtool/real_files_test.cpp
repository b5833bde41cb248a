// SPDX-License-Identifier: BSD-3-Clause
// Imports of real survey files against the values that an independent script reads from them.
#include "tests/apps/rdbtool/database_rows.h"
#include "tests/apps/rdbtool/tool_run.h"
#include "tests/support/temp_dir.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <sstream>

namespace {

using support::DatabaseRows;
using testing::HasSubstr;

class RealFile : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(RDB2NIMBRA_TEST_DATA)) {
      GTEST_SKIP() << "SKIPPED: no folder with real survey files at " << RDB2NIMBRA_TEST_DATA
                   << "; set RDB2NIMBRA_TEST_DATA";
    }
  }
  static std::string source(const std::string& name) {
    return std::string(RDB2NIMBRA_TEST_DATA) + "/" + name;
  }
  support::Run importing(const std::string& name) {
    return support::runTool({"import", source(name), "-o", folder.path("out")});
  }
  support::TempDir folder;
};

/// The values of a line of the script: a column, or one component of a column.
std::vector<double> valuesOf(const DatabaseRows& rows, const std::string& name) {
  const bool component = name.rfind("xyz", 0) == 0 || name.rfind("rgba", 0) == 0;
  if (!component) {
    return rows.column(name);
  }
  const std::vector<double> all = rows.column("riegl." + name.substr(0, name.size() - 1));
  const std::size_t length = name[0] == 'x' ? 3 : 4;
  std::vector<double> picked;
  for (std::size_t at = static_cast<std::size_t>(name.back() - '0'); at < all.size(); at += length) {
    picked.push_back(all[at]);
  }
  return picked;
}

/// Compares one line of the script: extremes up to a few last bits, the sum up to the rounding of plain addition.
void expectLine(const DatabaseRows& rows, const std::string& line) {
  std::istringstream words(line);
  std::string name;
  std::size_t count = 0;
  double smallest = 0, largest = 0, sum = 0;
  ASSERT_TRUE(words >> name >> count >> smallest >> largest >> sum) << line;
  const std::vector<double> values = valuesOf(rows, name);
  ASSERT_EQ(values.size(), count) << name;
  EXPECT_DOUBLE_EQ(*std::min_element(values.begin(), values.end()), smallest) << name;
  EXPECT_DOUBLE_EQ(*std::max_element(values.begin(), values.end()), largest) << name;
  long double added = 0;
  for (const double value : values) {
    added += value;
  }
  EXPECT_NEAR(static_cast<double>(added), sum, 1e-12 * (std::abs(sum) + 1)) << name;
}

/// A file, its records, its columns without the extra direction, and the day of its time base.
struct Sound {
  const char* file;
  std::size_t records;
  std::size_t linesAtLeast;
  const char* day;
};

void PrintTo(const Sound& row, std::ostream* out) {
  *out << row.file;
}

class SoundRealFile : public RealFile, public testing::WithParamInterface<Sound> {};

TEST_P(SoundRealFile, ImportHoldsWhatTheScriptFinds) {
  ASSERT_EQ(importing(GetParam().file).status, 0);
  const DatabaseRows rows(folder.path("out"));
  EXPECT_EQ(rows.records(), GetParam().records);
  const support::Run script = support::runProgram(
      PYTHON_PROGRAM, {EXPECTATION_SCRIPT, source(GetParam().file)}, folder.root().string());
  ASSERT_EQ(script.status, 0) << script.err;
  std::istringstream lines(script.out);
  std::size_t count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    expectLine(rows, line);
  }
  EXPECT_GE(count, GetParam().linesAtLeast);
}

TEST_P(SoundRealFile, EpochIsTheDayOfTheFirstStamp) {
  ASSERT_EQ(importing(GetParam().file).status, 0);
  EXPECT_EQ(DatabaseRows(folder.path("out")).item("riegl.time_base"),
            std::string(R"({"epoch":")") + GetParam().day +
                R"(T00:00:00+00:00","source":"GNSS","system":"GPS"})");
}

INSTANTIATE_TEST_SUITE_P(Files, SoundRealFile,
                         testing::Values(Sound{"autzen-thin-srs.las", 10653, 13, "1980-01-08"}, // Tuesday
                                         Sound{"mvk-thin.las", 6280, 10, "2010-05-26"},         // Wednesday
                                         Sound{"extrabytes.las", 1065, 17, "2015-02-24"},       // Tuesday
                                         Sound{"leeward-points.las", 1325, 13, "2020-10-29"},   // Thursday
                                         Sound{"neg-crosses-midnight-adjusted.las", 3000, 13,
                                               "2018-04-05"},                          // Thursday
                                         Sound{"leeward.sbet", 200, 8, "1980-01-10"}), // Thursday
                         [](const auto& file) {
                           std::string name = file.param.file;
                           std::replace_if(
                               name.begin(), name.end(), [](char letter) { return !std::isalnum(letter); },
                               '_');
                           return name;
                         });

TEST_F(RealFile, StampsThatCrossMidnightStayOnTwoDays) {
  ASSERT_EQ(importing("neg-crosses-midnight-adjusted.las").status, 0);
  const std::vector<double> stamps = DatabaseRows(folder.path("out")).column("riegl.timestamp");
  const auto [first, last] = std::minmax_element(stamps.begin(), stamps.end());
  EXPECT_EQ(std::floor(*first / 86400), 3);
  EXPECT_EQ(std::floor(*last / 86400), 4);
}

TEST_F(RealFile, AnEmptyFileGivesColumnsWithoutRecords) {
  ASSERT_EQ(importing("edge-no-points.las").status, 0);
  const DatabaseRows rows(folder.path("out"));
  EXPECT_EQ(rows.records(), 0U);
  EXPECT_TRUE(rows.has("riegl.xyz"));
  EXPECT_TRUE(rows.has("riegl.rgba"));
}

TEST_F(RealFile, UndescribedExtraBytesAreReported) {
  EXPECT_THAT(importing("extrabytes.las").err,
              HasSubstr("extra bytes \"Reserved\": 7 bytes without a type, skipped"));
}

TEST_F(RealFile, OnePointShortIsRefused) {
  const support::Run run = importing("neg-truncated-one-point-short.las");
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("expected 1065 points as in the header, found 1064"));
}

TEST_F(RealFile, PartOfATrajectoryRecordIsRefused) {
  const support::Run run = importing("neg-sbet-271-bytes.sbet");
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr("found 271, which is 1 whole record and 135 bytes"));
}

TEST_F(RealFile, TheTrajectoryHoldsKnownRecords) {
  ASSERT_EQ(importing("leeward.sbet").status, 0);
  const DatabaseRows rows(folder.path("out"));
  EXPECT_EQ(rows.column("riegl.pof_timestamp").front(), 400825.0013129992);
  EXPECT_EQ(rows.column("riegl.pof_timestamp").back(), 400825.9965316785);
  EXPECT_NEAR(rows.column("riegl.pof_latitude").front(), 37.764754321, 1e-8);
  EXPECT_NEAR(rows.column("riegl.pof_longitude").front(), -119.023823604, 1e-8);
  EXPECT_EQ(rows.column("riegl.pof_height").front(), 6991.64706648894);
  EXPECT_NEAR(rows.column("riegl.pof_yaw").front(), 163.98714593, 1e-8);
}

} // namespace
