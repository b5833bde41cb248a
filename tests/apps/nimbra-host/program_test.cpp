// SPDX-License-Identifier: BSD-3-Clause
// The program as users and scripts run it: exit statuses, standard error, and complete loads.
#include "tests/apps/nimbra-host/program_run.h"
#include "tests/support/database.h"
#include "tests/support/permissions.h"
#include "tests/support/temp_dir.h"

#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <unistd.h>

namespace {

using container::ElementType;
using hosttest::ProgramRun;
using hosttest::runProgram;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

const char* const gpsTimeBase =
    R"({"epoch": "2019-02-08T00:00:00+00:00", "source": "GNSS", "system": "GPS"})";

class Program : public testing::Test {
 protected:
  /// Points on a line, with time stamps on one day.
  std::string givenCloud(std::uint64_t records,
                         const std::map<std::string, std::string>& metadata = {}) const {
    const std::string path = directory.path("scan.rdbx");
    const auto place = [](std::uint64_t record, unsigned int axis) { return double(record) + axis / 4.0; };
    support::writeDatabase(path, records, {support::column("riegl.xyz", ElementType::float64, 3, place)},
                           metadata);
    return path;
  }

  /// A flight northwards, one record per second.
  std::string givenTrajectory(double firstStamp, const std::string& timeBase = gpsTimeBase) const {
    const auto along = [](double start, double step) {
      return [start, step](std::uint64_t record, unsigned int) { return start + step * double(record); };
    };
    std::vector<support::Column> columns;
    for (const char* const name : {"roll", "pitch", "yaw", "height", "path_length"}) {
      columns.push_back(
          support::column(std::string("riegl.pof_") + name, ElementType::float64, 1, along(0, 1)));
    }
    columns.push_back(support::column("riegl.pof_timestamp", ElementType::float64, 1, along(firstStamp, 1)));
    columns.push_back(support::column("riegl.pof_longitude", ElementType::float64, 1, along(15, 0)));
    columns.push_back(support::column("riegl.pof_latitude", ElementType::float64, 1, along(48, 1e-3)));
    support::writeDatabase(directory.path("flight.pofx"), 3, columns, {{"riegl.time_base", timeBase}});
    return directory.path("flight.pofx");
  }

  std::string givenText(const std::string& name, const std::string& content) const {
    std::ofstream(directory.path(name)) << content;
    return directory.path(name);
  }

  support::TempDir directory;
};

/// The values of a column in its first fragment.
nlohmann::json valuesOf(const ProgramRun& run, const std::string& name) {
  const nlohmann::json report = run.json();
  for (const auto& representation : report["representations"]) {
    for (const auto& field : representation["fields"]) {
      if (field["name"] == name && !field["fragments"].empty()) {
        return field["fragments"][0]["values"];
      }
    }
  }
  return nullptr;
}

TEST_F(Program, WrongUseIsStatusTwo) {
  for (const char* const arguments :
       {"", "load", "fly", "load a.rdbx --no-such-option", "load a.rdbx b.rdbx", "load a.rdbx --values some",
        "load a.rdbx --values -1", "load a.rdbx --epsg x", "load a.pofx --epsg 032633",
        "load a.pofx --epsg 0x10", "load a.rdbx --picture a.png --size 0x5",
        "load a.rdbx --picture a.png --size 5", "load missing.pofx"}) {
    const ProgramRun run = runProgram(arguments);
    EXPECT_EQ(run.status, 2) << arguments;
    EXPECT_EQ(run.out, "") << arguments;
    EXPECT_THAT(run.err, StartsWith("nimbra-host: ")) << arguments;
  }
}

TEST_F(Program, NamesWhatAnOptionAccepts) {
  for (const auto& [option, text] : std::map<std::string, std::string>{
           {"--values some", "--values: expected a number of elements or all, found some"},
           {"--epsg 032633", "--epsg: expected a whole number, found 032633"},
           {"--size 16385x1", "--size: expected WIDTHxHEIGHT with sides from 1 to 16384, found 16385x1"}}) {
    const ProgramRun run = runProgram("load a.rdbx " + option);
    EXPECT_EQ(run.err, "nimbra-host: " + text + "\nTry: nimbra-host load --help\n");
  }
}

TEST_F(Program, PictureWithoutANameIsWrongUse) {
  const ProgramRun run = runProgram("load --picture '' " + givenCloud(1));
  EXPECT_EQ(run.status, 2);
  EXPECT_THAT(run.err,
              StartsWith("nimbra-host: --picture: expected the path of a file, found an empty text"));
}

TEST_F(Program, HelpIsNoFailure) {
  const ProgramRun run = runProgram("load --help");
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, HasSubstr("--rebase-time"));
  const ProgramRun version = runProgram("--version");
  EXPECT_EQ(version.status, 0);
  EXPECT_THAT(version.out, MatchesRegex("nimbra-host [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(Program, TrajectoryWithoutASystemIsWrongUse) {
  EXPECT_EQ(runProgram("load a.pofx").err,
            "nimbra-host: a.pofx: a trajectory needs --epsg N, the code of the "
            "system that its positions are projected to\n");
}

TEST_F(Program, FileThatCannotBeReadIsStatusThree) {
  const std::string missing = directory.path("no.rdbx");
  const ProgramRun run = runProgram("load --json " + missing);
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "nimbra-host: cannot read " + missing + ": No such file or directory\n");
}

TEST_F(Program, DirectoryIsStatusThree) {
  const ProgramRun run = runProgram("load " + directory.root().string());
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(run.err, "nimbra-host: cannot read " + directory.root().string() + ": Is a directory\n");
}

TEST_F(Program, FileWithoutPermissionIsStatusThree) {
  if (!support::bindStartedProgramsByPermissions()) {
    GTEST_SKIP() << "SKIPPED: permissions do not bind the superuser, and that right cannot be dropped here";
  }
  const std::string path = givenCloud(1);
  std::filesystem::permissions(path, std::filesystem::perms::none);
  const ProgramRun run = runProgram("load " + path);
  EXPECT_EQ(run.status, 3);
  EXPECT_EQ(run.err, "nimbra-host: cannot read " + path + ": Permission denied\n");
}

TEST_F(Program, FileThatIsNoDatabaseIsStatusOne) {
  const std::string path = givenText("text.rdbx", "not a database");
  const ProgramRun run = runProgram("load " + path);
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, StartsWith("nimbra-host: " + path + ": failed: "));
  EXPECT_THAT(run.out, HasSubstr("Result    failed: "));
}

TEST_F(Program, FailureOfALoadIsInTheJsonAlone) {
  const ProgramRun run = runProgram("load --json " + givenText("text.rdbx", "not a database"));
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "");
  EXPECT_NE(run.json()["result"], "");
  EXPECT_EQ(run.json()["representations"], nlohmann::json::array());
}

TEST_F(Program, CloudIsLoadedAndShown) {
  const ProgramRun run = runProgram("load --json --values 2 " + givenCloud(3));
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.json()["result"], "");
  EXPECT_EQ(valuesOf(run, "Positions"), nlohmann::json::parse("[[0,0.25,0.5],[1,1.25,1.5]]"));
  EXPECT_EQ(run.err, "");
}

TEST_F(Program, ReportForPeopleNamesTheCounts) {
  const ProgramRun run = runProgram("load " + givenCloud(3));
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, HasSubstr("Result    loaded\n"));
  EXPECT_THAT(run.out, HasSubstr("3 records, 72 B on the grid"));
}

TEST_F(Program, ConsoleLinesAreInTheJsonAndNotOnStandardError) {
  const ProgramRun run =
      runProgram("load --json " + givenCloud(1, {{"riegl.time_base", R"({"epoch": "2019-02-08"})"}}));
  EXPECT_FALSE(run.json()["console"].empty());
  EXPECT_EQ(run.err, "");
}

TEST_F(Program, OptionWithoutEffectIsNoted) {
  const ProgramRun run = runProgram("load --epsg 32633 " + givenCloud(1));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "nimbra-host: note: --epsg has no effect on a point cloud\n");
}

TEST_F(Program, TrajectoryIsLoadedAndItsTimeLeftAlone) {
  const ProgramRun run = runProgram("load --json --values all --epsg 32633 " + givenTrajectory(100));
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(valuesOf(run, "GPSTime"), nlohmann::json::parse("[100,101,102]"));
  EXPECT_NEAR(valuesOf(run, "Positions")[0][0].get<double>(), 500000, 1);
  EXPECT_FALSE(run.json().contains("rebaseError"));
}

TEST_F(Program, RebasingMovesTheTimeOntoTheWeek) {
  const ProgramRun run =
      runProgram("load --json --values all --epsg 32633 --rebase-time " + givenTrajectory(100));
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(run.json()["rebaseError"], "");
  const double first = valuesOf(run, "GPSTime")[0];
  EXPECT_EQ(first, 100 + 86400.0 * 6 - 18);
}

TEST_F(Program, RebasingThatFailsIsStatusOneThoughTheLoadSucceeded) {
  const ProgramRun run = runProgram("load --json --epsg 32633 --rebase-time " + givenTrajectory(86399));
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.json()["result"], "");
  EXPECT_EQ(run.json()["rebaseError"], "baseRDB2Nimbra:: Input file spans two days! Not implemented so far.");
}

TEST_F(Program, LeverArmStandsOnTheGrid) {
  const std::string arm = givenText("arm.txt", "leverarm:0.1:0.2:0.3\nmisalignment:0:0:1.5\n");
  const ProgramRun run =
      runProgram("load --json --epsg 32633 --lever-arm " + arm + " " + givenTrajectory(100));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.json()["attributes"][0],
            nlohmann::json::parse(R"({"name": "LeverArm", "type": "double", "values": [0.1,0.2,0.3]})"));
}

TEST_F(Program, ExceptionOfALoadIsReported) {
  const std::string arm = givenText("arm.txt", "leverarm:one:0:0\n");
  const ProgramRun run =
      runProgram("load --json --epsg 32633 --lever-arm " + arm + " " + givenTrajectory(100));
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.json()["exception"],
            nlohmann::json::parse(R"({"type": "std::invalid_argument", "what": "stod"})"));
  EXPECT_EQ(run.json()["result"], "");
}

TEST_F(Program, WaveformMetadataAreReadAndAttached) {
  const std::string shots = directory.path("a.sodx");
  ASSERT_EQ(std::system(("\"" TOOL_PROGRAM "\" synth shots --records 100 -o " + shots).c_str()), 0);
  const ProgramRun run = runProgram("load --json --waveform " + shots);
  EXPECT_EQ(run.status, 0) << run.out;
  const auto waveform = run.json()["waveform"];
  EXPECT_NE(waveform["speak"], "");
  EXPECT_EQ(waveform["waveformField"]["attributes"][0]["name"], "WaveformSampleInterval");
  EXPECT_EQ(waveform["tRefField"]["attributes"][0]["name"], "t_ref");
  EXPECT_EQ(waveform["pointGrid"]["attributes"].back()["name"], "reflectance_calculation_table");
}

TEST_F(Program, MissingWaveformMetadataAreStatusOne) {
  const ProgramRun run = runProgram("load --json --waveform " + givenCloud(1));
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.json()["result"], "");
  EXPECT_EQ(run.json()["waveform"]["result"], "Error: Key not found");
  EXPECT_TRUE(run.json()["waveform"]["pointGrid"]["attributes"].empty());
}

TEST_F(Program, PictureIsWritten) {
  const std::string picture = directory.path("a.png");
  const ProgramRun run = runProgram("load --json --picture " + picture + " --size 64x48 " + givenCloud(10));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.json()["picture"]["points"], 10);
  EXPECT_GT(std::filesystem::file_size(picture), 50U);
}

TEST_F(Program, PictureThatCannotBeWrittenIsStatusOne) {
  const ProgramRun run = runProgram("load --picture " + directory.path("no/a.png") + " " + givenCloud(10));
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err, HasSubstr(": picture not drawn: cannot write "));
}

TEST_F(Program, PictureDoesNotTakeThePlaceOfAnInput) {
  const std::string cloud = givenCloud(3);
  const std::string arm = givenText("arm.txt", "leverarm:1:2:3\n");
  const std::string flight = "load --epsg 32633 --lever-arm " + arm + " " + givenTrajectory(1);
  EXPECT_EQ(runProgram("load --picture " + cloud + " " + cloud).err,
            "nimbra-host: --picture: expected a file other than " + cloud + ", found the same file\n");
  EXPECT_EQ(runProgram(flight + " --picture " + arm).status, 2);
  EXPECT_EQ(runProgram("load " + cloud).status, 0);
  EXPECT_EQ(std::filesystem::file_size(arm), 15U);
}

TEST_F(Program, SizeWithoutAPictureIsNoted) {
  const ProgramRun run = runProgram("load --size 10x10 " + givenCloud(1));
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "nimbra-host: note: --size has no effect without --picture\n");
}

TEST_F(Program, OutputThatCannotBeWrittenIsStatusOne) {
  const std::string load = "load --json --values all " + givenCloud(100000);
  for (const char* const redirection : {">/dev/full", ">&-", "| head -c 10 >/dev/null"}) {
    const ProgramRun run = runProgram(load, redirection);
    EXPECT_EQ(run.status, 1) << redirection;
    EXPECT_EQ(run.err, "nimbra-host: cannot write to standard output\n") << redirection;
  }
  const ProgramRun help = runProgram("load --help", ">/dev/full");
  EXPECT_EQ(help.status, 1);
  EXPECT_EQ(help.err, "nimbra-host: cannot write to standard output\n");
}

TEST_F(Program, PathWithBytesThatAreNoUtf8StillGivesJson) {
  const std::string odd = directory.path("odd\xff.rdbx");
  std::filesystem::rename(givenCloud(1), odd);
  const ProgramRun run = runProgram("load --json '" + odd + "'");
  EXPECT_TRUE(nlohmann::json::accept(run.out)) << run.out;
}

} // namespace
