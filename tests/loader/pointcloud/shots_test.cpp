// SPDX-License-Identifier: BSD-3-Clause
// The waveform attributes that a shot database adds to "Positions".
#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/support/console_lines.h"
#include "tests/support/database.h"
#include "tests/support/grid.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

namespace {

using container::ElementType;
using support::field;
using Texts = std::vector<std::string>;

std::map<std::string, std::string> richMetadata() {
  return {{"riegl.atmosphere", R"({"group_velocity":299711000.5,"wavelength":1064.1})"},
          {"riegl.waveform_info", R"({"sample_data_files":[{"sample_interval":1e-9,"delta_st":1},)"
                                  R"({"sample_interval":2e-9,"delta_st":2.5}]})"},
          {"riegl.device", R"({"serial_number":"S2224","device_type":"VQ-X"})"},
          {"riegl.time_base", R"({"system":"UTC","epoch":"2015-10-25"})"}};
}

class ShotFile : public testing::Test {
 protected:
  std::string load(const std::string& name, const std::map<std::string, std::string>& metadata,
                   std::uint64_t records = 2) {
    const std::string path = directory.path(name);
    support::writeDatabase(path, records,
                           {support::column("riegl.echo_count", ElementType::uint16, 1,
                                            [](std::uint64_t, unsigned int) { return 3.0; })},
                           metadata);
    testing::internal::CaptureStderr();
    const std::string result = Riegl::rdbx2Z4(path, grid, 0, false, nullptr);
    testing::internal::GetCapturedStderr();
    return result;
  }
  const Torvel::Attributes& attributes() { return field(grid, "Positions")->attributes(); }
  double number(const char* name) { return support::attributeValues<double>(attributes(), name).at(0); }
  std::string text(const char* name) {
    return support::attributeValues<std::string>(attributes(), name).at(0);
  }

  support::TempDir directory;
  Nimbra::Grid grid;
};

const Texts nineNames{"group_velocity",
                      "sample_interval",
                      "wavelength[nm]",
                      "t_ref",
                      "serial_number",
                      "device_type",
                      "time_base",
                      "SHOT_TIMESTAMP_HR_RESOLUTION",
                      "WFM_SBL_TIME_OFFSET_RESOLUTION"};

TEST_F(ShotFile, HasNineAttributesOnPositionsInOrder) {
  ASSERT_EQ(load("shots.sodx", richMetadata()), "");
  EXPECT_EQ(support::attributeNames(attributes()), nineNames);
  EXPECT_TRUE(field(grid, "Positions", support::scanner)->attributes().empty());
}

TEST_F(ShotFile, HasTheNumbersOfItsMetadata) {
  ASSERT_EQ(load("shots.sodx", richMetadata()), "");
  EXPECT_EQ(number("group_velocity"), 299711000.5);
  EXPECT_EQ(number("sample_interval"), 2e-9);
  EXPECT_EQ(support::attributeValues<float>(attributes(), "wavelength[nm]").at(0), 1064.1F);
  EXPECT_EQ(number("t_ref"), -2.5);
  EXPECT_EQ(number("SHOT_TIMESTAMP_HR_RESOLUTION"), 4e-12);
  EXPECT_EQ(number("WFM_SBL_TIME_OFFSET_RESOLUTION"), 4e-12);
}

TEST_F(ShotFile, HasTheTextsOfItsMetadata) {
  ASSERT_EQ(load("shots.sodx", richMetadata()), "");
  EXPECT_EQ(text("serial_number"), "S2224");
  EXPECT_EQ(text("device_type"), "VQ-X");
  EXPECT_EQ(text("time_base"), "{\n    \"epoch\": \"2015-10-25\",\n    \"system\": \"UTC\"\n}\n");
}

TEST_F(ShotFile, SetsItsAttributesOnceForAllBlocks) {
  const support::ConsoleLines console;
  ASSERT_EQ(load("shots.sodx", richMetadata(), 5000001), "");
  EXPECT_EQ(support::attributeNames(attributes()), nineNames);
  EXPECT_EQ(field(grid, "EchoCount")->fragments().size(), 2U);
  EXPECT_EQ(
      std::count(console.lines().begin(), console.lines().end(), "WARNING sing of t_ref will be flipped: "),
      1);
}

class ShotFileWithout : public ShotFile, public testing::WithParamInterface<const char*> {};

TEST_P(ShotFileWithout, AnItemThatIsNeededEndsBeforeTheFirstRead) {
  const support::ConsoleLines console;
  auto metadata = richMetadata();
  metadata.erase(GetParam());
  EXPECT_EQ(load("shots.sodx", metadata), "Error: Key not found");
  EXPECT_TRUE(attributes().empty());
  EXPECT_TRUE(field(grid, "EchoCount")->fragments().empty());
}

INSTANTIATE_TEST_SUITE_P(InTurn, ShotFileWithout,
                         testing::Values("riegl.atmosphere", "riegl.waveform_info", "riegl.device",
                                         "riegl.time_base"));

TEST_F(ShotFile, OfTheOtherKindHasNoneOfThemHoweverRichItsMetadata) {
  ASSERT_EQ(load("points.rdbx", richMetadata()), "");
  EXPECT_TRUE(attributes().empty());
}

} // namespace
