// SPDX-License-Identifier: BSD-3-Clause
// Pins loads that end early: the text, and the content of the grid.
#include <rdb2nimbra/client.h>

#include "tests/loader/trajectory/flight.h"

#include <filesystem>
#include <ostream>

namespace {

using namespace flight;
using testing::ElementsAre;
using testing::EndsWith;

struct Missing {
  std::vector<std::string> attributes;
  const char* text;

  friend void PrintTo(const Missing& test, std::ostream* stream) {
    *stream << testing::PrintToString(test.attributes);
  }
};

class MissingAttribute : public Load, public testing::WithParamInterface<Missing> {};

TEST_P(MissingAttribute, IsNamedAndLeavesTheGridUntouched) {
  givenFlightWithout(GetParam().attributes);
  givenLeverArm("leverarm:1:2:3\nmisalignment:4:5:6\n");
  EXPECT_EQ(load(), GetParam().text);
  EXPECT_TRUE(gridIsUntouched());
}

INSTANTIATE_TEST_SUITE_P(
    Load, MissingAttribute,
    testing::Values(
        Missing{{"riegl.pof_timestamp"}, "pofx2nimbra::iniMe: no timestamp"},
        Missing{{"riegl.pof_roll"}, "pofx2nimbra::iniMe: no pof_roll"},
        Missing{{"riegl.pof_pitch"}, "pofx2nimbra::iniMe: no pof_pitch"},
        Missing{{"riegl.pof_yaw"}, "pofx2nimbra::iniMe: no pof_yaw"},
        Missing{{"riegl.pof_path_length"}, "pofx2nimbra::iniMe: no pof_path_length"},
        Missing{{"riegl.pof_latitude"}, "pofx2nimbra::iniMe: no pof_latitude"},
        Missing{{"riegl.pof_longitude"}, "pofx2nimbra::iniMe: no pof_longitude"},
        Missing{{"riegl.pof_height"}, "pofx2nimbra::iniMe: no pof_height"},
        // The first missing attribute is named, whatever else is missing.
        Missing{{"riegl.pof_height", "riegl.pof_yaw"}, "pofx2nimbra::iniMe: no pof_yaw"},
        Missing{{"riegl.pof_height", "riegl.pof_longitude"}, "pofx2nimbra::iniMe: no pof_longitude"},
        Missing{{"riegl.pof_longitude", "riegl.pof_latitude"}, "pofx2nimbra::iniMe: no pof_latitude"},
        Missing{{"riegl.pof_latitude", "riegl.pof_path_length"}, "pofx2nimbra::iniMe: no pof_path_length"},
        Missing{{"riegl.pof_yaw", "riegl.pof_pitch"}, "pofx2nimbra::iniMe: no pof_pitch"},
        Missing{{"riegl.pof_pitch", "riegl.pof_roll"}, "pofx2nimbra::iniMe: no pof_roll"},
        Missing{{"riegl.pof_roll", "riegl.pof_timestamp"}, "pofx2nimbra::iniMe: no timestamp"}));

/// The client's error text for the file.
std::string wordsOfTheClient(const std::string& path) {
  try {
    riegl::rdb::Pointcloud(riegl::rdb::Context("", "")).open(path, riegl::rdb::pointcloud::OpenSettings());
  } catch (const riegl::rdb::Error& error) {
    return std::string(error.what()) + " (" + error.details() + ")";
  }
  return "opened";
}

TEST_F(Load, OfAFileThatIsNoDatabaseEndsWithThePath) {
  std::ofstream(path) << "no database";
  givenLeverArm("leverarm:x:2:3\n"); // would raise if the file were read
  EXPECT_EQ(load(), wordsOfTheClient(path) + " for File: " + path);
  EXPECT_TRUE(gridIsUntouched());
}

TEST_F(Load, OfNoFileEndsWithThePath) {
  EXPECT_THAT(load(), EndsWith(") for File: " + path));
  EXPECT_TRUE(gridIsUntouched());
}

TEST_F(Load, OfAnEmptyPathEndsWithAText) {
  path.clear();
  EXPECT_THAT(load(), EndsWith(") for File: "));
}

TEST_F(Load, OfADamagedBlockEndsWithThePathAndKeepsTheFields) {
  givenFlight(60000);
  const auto size = std::filesystem::file_size(path);
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(static_cast<std::streamoff>(size / 2));
  file << std::string(400, '\x55');
  file.close();
  EXPECT_THAT(load(), EndsWith(") for File: " + path));
  expectEveryFieldToHave({});
}

TEST_F(Load, WithoutItsLeverArmFileKeepsTheColumns) {
  givenFlight(3);
  leverArm = directory.path("none.txt");
  EXPECT_EQ(load(), "pofx2nimbra:Error opening leverarm file: " + leverArm);
  expectEveryFieldToHave({"flight_Fragment_0"});
}

TEST_F(Load, WithAWrongLeverArmFileKeepsTheColumns) {
  givenFlight(3);
  givenLeverArm("leverarm:1:2:3\n");
  EXPECT_EQ(load(), "pofx2nimbra::addLeverArm_Misalignment: cannot parse file");
  expectEveryFieldToHave({"flight_Fragment_0"});
  EXPECT_TRUE(grid.attributes().empty());
}

TEST_F(Load, RaisesForAWrongNumberInTheLeverArmFile) {
  givenFlight(3);
  givenLeverArm("leverarm:x:2:3\nmisalignment:4:5:6\n");
  EXPECT_THAT([this] { load(); }, testing::ThrowsMessage<std::invalid_argument>("stod"));
  expectEveryFieldToHave({"flight_Fragment_0"});
  EXPECT_TRUE(grid.attributes().empty());
}

TEST_F(Load, RaisesForATooLargeNumberInTheLeverArmFile) {
  givenFlight(3);
  givenLeverArm("leverarm:1:2:3\nmisalignment:4:1e999:6\n");
  EXPECT_THAT([this] { load(); }, testing::ThrowsMessage<std::out_of_range>("stod"));
  expectEveryFieldToHave({"flight_Fragment_0"});
}

TEST_F(Load, WithALeverArmFileAttachesBothVectorsToTheGrid) {
  givenFlight(3);
  givenLeverArm("leverarm:0.1:0.2:0.3\nmisalignment:0.0:0.0:1.5\n");
  EXPECT_EQ(load(), "");
  EXPECT_THAT(support::attributeValues<double>(grid.attributes(), "LeverArm"), ElementsAre(0.1, 0.2, 0.3));
  EXPECT_THAT(support::attributeValues<double>(grid.attributes(), "Misalignment"), ElementsAre(0, 0, 1.5));
}

} // namespace
