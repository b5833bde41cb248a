// SPDX-License-Identifier: BSD-3-Clause
// The content of synthetic databases, which a seed alone determines.
#include "apps/rdbtool/seeded_noise.h"
#include "tests/apps/rdbtool/database_rows.h"
#include "tests/apps/rdbtool/stored_content.h"
#include "tests/apps/rdbtool/tool_run.h"
#include "tests/support/file_content.h"
#include "tests/support/temp_dir.h"

#include <cmath>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>

namespace {

using support::DatabaseRows;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

class Synth : public testing::Test {
 protected:
  support::Run run(const std::string& kind, int records, const std::string& name,
                   std::vector<std::string> more = {}) {
    more.insert(more.begin(), {"synth", kind, "--records", std::to_string(records), "-o", folder.path(name)});
    return support::runTool(more);
  }
  DatabaseRows made(const std::string& kind, int records, std::vector<std::string> more = {}) {
    const support::Run result = run(kind, records, kind, more);
    EXPECT_EQ(result.status, 0) << result.err;
    return DatabaseRows(folder.path(kind));
  }
  std::string bytesOf(const std::string& name) const { return support::contentOf(folder.path(name)); }
  support::TempDir folder;
};

TEST_F(Synth, TheSameSeedGivesTheSameFile) {
  for (const char* kind : {"scan", "shots", "trajectory"}) {
    run(kind, 3000, "one", {"--seed", "11"});
    run(kind, 3000, "two", {"--seed", "11"});
    run(kind, 3000, "other", {"--seed", "12"});
    EXPECT_EQ(bytesOf("one"), bytesOf("two")) << kind;
    EXPECT_NE(bytesOf("one"), bytesOf("other")) << kind;
  }
}

TEST_F(Synth, FewerRecordsAreThePrefixOfMore) {
  for (const char* kind : {"scan", "shots", "trajectory"}) {
    const DatabaseRows longer = made(kind, 70000, {"--seed", "5"});
    ASSERT_EQ(run(kind, 300, "short", {"--seed", "5"}).status, 0);
    const DatabaseRows shorter(folder.path("short"));
    for (const std::string& name : longer.names()) {
      std::vector<double> begin = longer.column(name);
      const std::vector<double> expected = shorter.column(name);
      begin.resize(expected.size());
      EXPECT_EQ(begin, expected) << kind << " " << name;
    }
  }
}

TEST_F(Synth, TheFirstRecordOfASeedNeverChanges) {
  // Pinned bits: every machine, compiler and release must compute them.
  const DatabaseRows scan = made("scan", 1, {"--seed", "42", "--columns", "xyz,timestamp,class"});
  EXPECT_THAT(scan.column("riegl.timestamp"), ElementsAre(36119.0));
  EXPECT_THAT(scan.column("riegl.xyz"), ElementsAre(459804.606, 5564608.489, 288.988));
}

/// Whether every value of a component is a 32-bit integer x 0.001 + offset, bit for bit.
bool areMillimetres(const std::vector<double>& values, const std::vector<double>& offsets) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double offset = offsets[i % offsets.size()];
    const double whole = std::nearbyint((values[i] - offset) / 0.001);
    const double product = whole * 0.001;
    if (std::abs(whole) > 2147483647 || values[i] != product + offset) {
      return false;
    }
  }
  return !values.empty();
}

TEST_F(Synth, CoordinatesAreWholeMillimetres) {
  const DatabaseRows scan = made("scan", 60000), shots = made("shots", 60000);
  EXPECT_TRUE(areMillimetres(scan.column("riegl.xyz"), {450000, 5560000, 0}));
  EXPECT_TRUE(areMillimetres(scan.column("riegl.xyz_socs"), {0}));
  EXPECT_TRUE(areMillimetres(scan.column("riegl.raw_range"), {0}));
  EXPECT_TRUE(areMillimetres(shots.column("riegl.shot_origin"), {450000, 5560000, 0}));
  EXPECT_TRUE(areMillimetres(shots.column("riegl.raw_range"), {0}));
  EXPECT_FALSE(areMillimetres(shots.column("riegl.shot_direction"), {0}));
}

TEST_F(Synth, EncodingsStoreTheGridAsIntegers) {
  for (const char* encoding : {"lz4", "deflate"}) {
    ASSERT_EQ(run("scan", 3000, "scan", {"--encoding", encoding, "--columns", "xyz"}).status, 0);
    EXPECT_THAT(support::runTool({"info", folder.path("scan")}).out,
                testing::ContainsRegex("stored  " + std::string(encoding) + "[a-z, ]*, scaled, "));
  }
}

TEST_F(Synth, EncodingsKeepTheValues) {
  for (const char* kind : {"scan", "shots", "trajectory"}) {
    ASSERT_EQ(run(kind, 3000, "raw").status, 0);
    for (const char* encoding : {"raw", "lz4", "deflate"}) {
      ASSERT_EQ(run(kind, 3000, encoding, {"--encoding", encoding}).status, 0);
      EXPECT_EQ(support::storedContent(folder.path(encoding)), support::storedContent(folder.path("raw")));
    }
  }
}

TEST_F(Synth, WithoutChecksumsIsVersion1) {
  ASSERT_EQ(run("scan", 10, "scan", {"--no-checksums", "--encoding", "raw"}).status, 0);
  EXPECT_THAT(support::runTool({"info", folder.path("scan")}).out, HasSubstr("\nversion     1, "));
}

TEST_F(Synth, EveryKindHoldsItsColumns) {
  EXPECT_THAT(made("trajectory", 3).names(),
              testing::UnorderedElementsAre("riegl.pof_timestamp", "riegl.pof_roll", "riegl.pof_pitch",
                                            "riegl.pof_yaw", "riegl.pof_longitude", "riegl.pof_latitude",
                                            "riegl.pof_height", "riegl.pof_path_length"));
  const DatabaseRows shots = made("shots", 3);
  for (const char* name : {"wfm_sbl_time_offset", "id", "wfm_sbl_channel", "wfm_sbl_mean", "wfm_sbl_std_dev",
                           "wfm_sda_first", "wfm_sda_count", "wfm_sample_value", "line_angle_coarse",
                           "shot_origin", "shot_direction", "echo_first", "echo_count", "shot_timestamp_hr",
                           "wfm_sbl_first", "wfm_sbl_count", "raw_range", "gain"}) {
    EXPECT_TRUE(shots.has(std::string("riegl.") + name)) << name;
  }
  EXPECT_FALSE(shots.has("riegl.timestamp")) << "a load refuses both kinds of stamps";
}

TEST_F(Synth, ChosenColumnsAloneAreWritten) {
  const DatabaseRows rows =
      made("scan", 10, {"--columns", "deviation,riegl.xyz,xyz_socs,timestamp,amplitude,reflectance"});
  EXPECT_THAT(rows.names(), ElementsAre("riegl.xyz", "riegl.timestamp", "riegl.xyz_socs", "riegl.amplitude",
                                        "riegl.reflectance", "riegl.deviation"));
  EXPECT_EQ(rows.typeOf("riegl.amplitude"), "float32 x 1");
  EXPECT_EQ(rows.typeOf("riegl.deviation"), "int16 x 1");
}

TEST_F(Synth, CommasTooManySeparateNothing) {
  EXPECT_THAT(made("scan", 10, {"--columns", ",xyz,,class,", "--columns", "id"}).names(),
              ElementsAre("riegl.xyz", "riegl.class", "riegl.id"));
}

TEST_F(Synth, ColoursBringTheDirectionThatALoadNeeds) {
  EXPECT_THAT(made("scan", 10, {"--columns", "rgba"}).names(),
              ElementsAre("riegl.direction_medium", "riegl.rgba"));
}

TEST_F(Synth, StampsRiseWithinOneDayAndSeveralEchoesShareOne) {
  const DatabaseRows rows = made("scan", 60000);
  const std::vector<double> stamps = rows.column("riegl.timestamp");
  const std::vector<double> index = rows.column("riegl.target_index");
  const std::vector<double> count = rows.column("riegl.target_count");
  EXPECT_TRUE(std::is_sorted(stamps.begin(), stamps.end()));
  EXPECT_LT(stamps.back(), 86400);
  for (std::size_t row = 1; row < stamps.size(); ++row) {
    ASSERT_EQ(index[row], stamps[row] == stamps[row - 1] ? index[row - 1] + 1 : 1) << row;
    ASSERT_LE(index[row], count[row]);
  }
  EXPECT_EQ(*std::max_element(count.begin(), count.end()), 4);
}

TEST_F(Synth, GroundBuildingsAndTreesAreThere) {
  const std::vector<double> classes = made("scan", 60000).column("riegl.class");
  for (const double wanted : {2.0, 5.0, 6.0}) {
    EXPECT_GT(std::count(classes.begin(), classes.end(), wanted), 300) << wanted;
  }
}

TEST_F(Synth, BlockSizeAndChecksumsFollowTheSwitches) {
  ASSERT_EQ(run("scan", 1000, "scan", {"--block-rows", "300", "--no-checksums", "--columns", "xyz"}).status,
            0);
  EXPECT_THAT(support::runTool({"info", folder.path("scan")}).out, HasSubstr("block rows  300"));
  EXPECT_THAT(support::runTool({"verify", folder.path("scan")}).out,
              HasSubstr("4 blocks, 24000 bytes, 0 findings, 4 blocks without a checksum"));
}

TEST_F(Synth, NoRecordsMakeAnEmptyDatabase) {
  for (const char* kind : {"scan", "shots", "trajectory"}) {
    EXPECT_EQ(made(kind, 0).records(), 0U) << kind;
  }
}

TEST_F(Synth, TheLeverArmFileIsWrittenBesideTheTrajectory) {
  ASSERT_EQ(run("trajectory", 2, "t.pofx", {"--lever-arm", folder.path("arm.txt")}).status, 0);
  EXPECT_EQ(bytesOf("arm.txt"), "leverarm:0.1:0.2:0.3\nmisalignment:0:0:1.5\n");
}

TEST_F(Synth, TheLeverArmFileDoesNotTakeTheDatabasesPlace) {
  const support::Run result = run("trajectory", 2, "t.pofx", {"--lever-arm", folder.path("t.pofx")});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.err, HasSubstr("expected an output other than"));
}

TEST_F(Synth, ALeverArmFileThatCannotBeWrittenLeavesNoDatabase) {
  std::filesystem::create_directory(folder.path("taken"));
  for (const auto& [name, reason] :
       {std::pair{"none/arm.txt",
                  "expected a directory that takes a new file, found: No such file or directory"},
        {"taken", "expected a new or a regular file, found: a directory"}}) {
    const support::Run result = run("trajectory", 2, "t.pofx", {"--lever-arm", folder.path(name)});
    EXPECT_EQ(result.status, 1) << name;
    EXPECT_EQ(result.err, "rdbtool: cannot write " + folder.path(name) + ": " + reason + "\n");
    EXPECT_FALSE(std::filesystem::exists(folder.path("t.pofx"))) << name;
    EXPECT_EQ(std::distance(begin(std::filesystem::directory_iterator(folder.root())), {}), 1) << name;
  }
}

TEST_F(Synth, TheTimeBaseIsUtc) {
  for (const char* kind : {"scan", "shots", "trajectory"}) {
    EXPECT_THAT(made(kind, 1).item("riegl.time_base"),
                testing::MatchesRegex(
                    R"re(\{"epoch":"2024-05-1.T00:00:00\+00:00","source":"GNSS","system":"UTC"\})re"));
  }
}

TEST_F(Synth, ShotsCarryTheWaveformItems) {
  const DatabaseRows shots = made("shots", 1);
  EXPECT_THAT(shots.item("riegl.atmosphere"), HasSubstr("\"group_velocity\":299711000.0"));
  EXPECT_THAT(shots.item("riegl.waveform_info"), HasSubstr("\"delta_st\":2.5e-09"));
  EXPECT_THAT(shots.item("riegl.device"), HasSubstr("\"serial_number\":\"S0000001\""));
  EXPECT_THAT(shots.item("riegl.mta_settings"), HasSubstr("\"zone_width\":1499.0"));
  EXPECT_THAT(shots.item("debug.rxp_parameters"), HasSubstr("\"pointcloud\":{\"refltab\":[-40.0,"));
  EXPECT_THAT(shots.item("riegl.exponential_decomposition"), HasSubstr("\"2\":{\"delay\":"));
}

TEST_F(Synth, ItemsAndKeysCanBeLeftOut) {
  const DatabaseRows shots =
      made("shots", 1, {"--without", "riegl.device", "--without", "riegl.waveform_info:delta_st"});
  EXPECT_EQ(shots.item("riegl.device"), "");
  EXPECT_THAT(shots.item("riegl.waveform_info"), Not(HasSubstr("delta_st")));
  EXPECT_THAT(shots.item("riegl.waveform_info"), HasSubstr("sample_interval"));
}

/// Wrong requests, and the text that refuses them.
struct WrongRequest {
  const char* name;
  const char* kind;
  int records;
  std::vector<std::string> more;
  const char* text;
};

void PrintTo(const WrongRequest& row, std::ostream* out) {
  *out << row.name;
}

class SynthRefusal : public Synth, public testing::WithParamInterface<WrongRequest> {};

TEST_P(SynthRefusal, IsWrongUseAndLeavesNothing) {
  const support::Run result = run(GetParam().kind, GetParam().records, "out", GetParam().more);
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.err, HasSubstr(GetParam().text));
  EXPECT_TRUE(std::filesystem::is_empty(folder.root()));
}

INSTANTIATE_TEST_SUITE_P(
    Requests, SynthRefusal,
    testing::Values(
        WrongRequest{"UnknownColumn", "scan", 1, {"--columns", "xyz,height"}, "found \"riegl.height\""},
        WrongRequest{
            "ColumnOfAnotherKind", "shots", 1, {"--columns", "timestamp"}, "found \"riegl.timestamp\""},
        WrongRequest{
            "OnlyCommas", "scan", 1, {"--columns", ","}, "--columns: expected names of columns, found \",\""},
        WrongRequest{
            "NoColumns", "scan", 1, {"--columns", ""}, "--columns: expected names of columns, found \"\""},
        WrongRequest{
            "NoLeverArmFile", "trajectory", 1, {"--lever-arm", ""}, "--lever-arm: expected the path"},
        WrongRequest{"UnknownItem", "scan", 1, {"--without", "riegl.device"}, "found no such item"},
        WrongRequest{"UnknownKey", "shots", 1, {"--without", "riegl.device:delta_st"}, "found no such key"},
        WrongRequest{"RateZero", "scan", 1, {"--pulse-rate", "0"}, "--pulse-rate: expected 1 to 10000000"},
        WrongRequest{"PastMidnight", "trajectory", 60000, {"--trajectory-rate", "1"}, "ends before midnight"},
        WrongRequest{"NegativeCount", "scan", -1, {}, "--records"},
        WrongRequest{"UnknownEncoding",
                     "scan",
                     1,
                     {"--encoding", "zip"},
                     "rdbtool: --encoding: expected raw, lz4 or deflate, found zip\n"},
        WrongRequest{
            "EncodingOfVersion1",
            "scan",
            1,
            {"--encoding", "lz4", "--no-checksums"},
            "rdbtool: --no-checksums: expected the encoding raw, the only one of version 1, found lz4\n"},
        WrongRequest{"BlockOfNothing", "scan", 1, {"--block-rows", "0"}, "--block-rows"}),
    [](const auto& request) { return std::string(request.param.name); });

TEST(SeededNoise, SinesAgreeWithTheLibrary) {
  for (int step = -4000; step <= 4000; ++step) {
    const double turns = step / 913.0;
    ASSERT_NEAR(rdbtool::sineOfTurns(turns), std::sin(turns * 6.283185307179586), 1e-13) << turns;
    ASSERT_NEAR(rdbtool::cosineOfTurns(turns), std::cos(turns * 6.283185307179586), 1e-13) << turns;
  }
}

} // namespace
