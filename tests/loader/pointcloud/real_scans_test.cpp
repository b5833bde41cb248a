// SPDX-License-Identifier: BSD-3-Clause
// Real survey files, imported with rdbtool and loaded, compared with columns computed without the project's code.
#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/support/grid.h"
#include "tests/support/temp_dir.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <numeric>
#include <sstream>

namespace {

using support::field;

struct Summary {
  std::size_t count = 0;
  double minimum = 0;
  double maximum = 0;
  double sum = 0;
};

std::string outputOf(const std::string& command) {
  std::string output;
  FILE* const pipe = popen(command.c_str(), "r");
  std::array<char, 4096> buffer;
  for (std::size_t got = 0; (got = fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
    output.append(buffer.data(), got);
  }
  EXPECT_EQ(pclose(pipe), 0) << command;
  return output;
}

class RealScan : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(data)) {
      GTEST_SKIP() << "THE REAL SURVEY FILES ARE NOT HERE: expected them in " << data.string();
    }
  }

  /// Imports and loads a file; fills `expected` with the independent results.
  std::string load(const std::string& name, bool all = true) {
    const std::string las = (data / name).string();
    const std::string rdbx = directory.path("scan.rdbx");
    EXPECT_EQ(std::system((std::string(RDBTOOL) + " import " + las + " -o " + rdbx).c_str()), 0);
    std::istringstream lines(outputOf("python3 " + script + " " + las));
    std::string column;
    Summary summary;
    while (lines >> column >> summary.count >> summary.minimum >> summary.maximum >> summary.sum) {
      expected[column] = summary;
    }
    return Riegl::rdbx2Z4(rdbx, grid, 0, all, nullptr);
  }

  template <class T>
  void expectColumn(const std::string& fieldName, const std::string& column) {
    const std::vector<T> values = support::values<T>(field(grid, fieldName), "Fragment_0");
    expectValues(std::vector<double>(values.begin(), values.end()), column);
  }

  void expectPositions() {
    const auto points =
        support::values<Quillon::PhysicalSpace::point>(field(grid, "Positions"), "Fragment_0");
    for (std::size_t axis = 0; axis < 3; ++axis) {
      std::vector<double> values;
      for (const auto& point : points) {
        values.push_back(point[axis]);
      }
      expectValues(values, std::string(1, "xyz"[axis]));
    }
  }

  void expectValues(const std::vector<double>& values, const std::string& column) {
    const Summary& wanted = expected.at(column);
    ASSERT_EQ(values.size(), wanted.count) << column;
    ASSERT_FALSE(values.empty()) << column;
    EXPECT_EQ(*std::min_element(values.begin(), values.end()), wanted.minimum) << column;
    EXPECT_EQ(*std::max_element(values.begin(), values.end()), wanted.maximum) << column;
    EXPECT_EQ(std::accumulate(values.begin(), values.end(), 0.0), wanted.sum) << column;
  }

  void expectTheUsualColumns() {
    expectPositions();
    expectColumn<double>("GPSTime", "time");
    expectColumn<float>("Amplitude", "intensity");
    expectColumn<unsigned char>("TargetIndex", "return");
    expectColumn<unsigned char>("TargetCount", "returns");
    expectColumn<unsigned short>("Classification", "class");
    expectColumn<unsigned int>("SourceIndex", "source");
  }

  const std::filesystem::path data = RDB2NIMBRA_TEST_DATA;
  const std::string script = std::string(SOURCE_DIR) + "/las_columns.py";
  support::TempDir directory;
  std::map<std::string, Summary> expected;
  Nimbra::Grid grid;
};

TEST_F(RealScan, OfNineFlightLinesWithColours) {
  ASSERT_EQ(load("autzen-thin-srs.las"), "");
  EXPECT_EQ(expected.at("x").count, 10653U);
  expectTheUsualColumns();
}

TEST_F(RealScan, OfSixClassesAndSeveralReturns) {
  ASSERT_EQ(load("mvk-thin.las"), "");
  EXPECT_EQ(expected.at("x").count, 6280U);
  expectTheUsualColumns();
}

TEST_F(RealScan, WithExtraBytes) {
  ASSERT_EQ(load("extrabytes.las"), "");
  expectTheUsualColumns();
}

TEST_F(RealScan, WithoutPointsHasFieldsAndNoFragments) {
  ASSERT_EQ(load("edge-no-points.las"), "");
  EXPECT_TRUE(field(grid, "Positions")->fragments().empty());
  EXPECT_TRUE(field(grid, "Amplitude"));
}

TEST_F(RealScan, AcrossMidnightIsRefusedWithItsDataOnTheGrid) {
  EXPECT_EQ(load("neg-crosses-midnight-adjusted.las"),
            "baseRDB2Nimbra:: Input file spans two days! Not implemented so far.");
  EXPECT_EQ(field(grid, "Positions")->fragments().size(), 1U);
}

TEST_F(RealScan, ThatIsTruncatedGivesNoDatabase) {
  const std::string out = directory.path("none.rdbx");
  const std::string command = std::string(RDBTOOL) + " import " +
                              (data / "neg-truncated-one-point-short.las").string() + " -o " + out + " 2>" +
                              directory.path("message");
  EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1);
  EXPECT_FALSE(std::filesystem::exists(out));
}

} // namespace
