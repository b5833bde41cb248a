// SPDX-License-Identifier: BSD-3-Clause
// The program as users run it: exit statuses, one line per failure, no incomplete outputs.
#include "tests/apps/rdbtool/database_rows.h"
#include "tests/apps/rdbtool/las_file.h"
#include "tests/apps/rdbtool/tool_run.h"
#include "tests/support/permissions.h"
#include "tests/support/temp_dir.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;

class Program : public testing::Test {
 protected:
  Program() {
    las = support::LasFile(2, 1).with(support::LasPoint()).writeTo(data.path("in.las"));
    std::ofstream(data.path("garbage.las")) << "this is no point file, however long it goes on";
    std::ofstream(data.path("garbage.rdbx")) << std::string(100000, 'g');
    std::ofstream(data.path("text.txt")) << "neither the one nor the other";
    std::ofstream(data.path("part.sbet")) << std::string(135, '\0');
    out = folder.path("out.rdbx");
  }
  support::Run run(const std::vector<std::string>& arguments) const {
    return support::runProgram(RDBTOOL_PROGRAM, arguments, data.root().string());
  }
  void expectRefused(const std::vector<std::string>& arguments, int status) const {
    const support::Run result = run(arguments);
    EXPECT_EQ(result.status, status) << result.err;
    EXPECT_THAT(result.err, StartsWith("rdbtool: "));
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_TRUE(std::filesystem::is_empty(folder.root())) << "something was left behind";
  }
  support::TempDir data;
  support::TempDir folder;
  std::string las, out;
};

TEST_F(Program, EndsWithZeroWhenDone) {
  EXPECT_EQ(run({"import", las, "-o", out}).status, 0);
  EXPECT_EQ(run({"info", out}).status, 0);
  EXPECT_EQ(run({"verify", out}).status, 0);
  EXPECT_EQ(run({"synth", "scan", "--records", "100", "-o", out}).status, 0);
  EXPECT_EQ(run({"damage", out, "--attribute", "riegl.xyz", "--flip-byte", "0"}).status, 0);
  EXPECT_EQ(run({"--help"}).status, 0);
  EXPECT_EQ(run({"synth", "scan", "--help"}).status, 0);
  const support::Run version = run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_THAT(version.out, MatchesRegex("rdbtool [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(Program, NameThatALoadReadsAsSomethingElseIsNoted) {
  struct Case {
    std::string kind, name, note;
  };
  for (const auto& [kind, name, note] : {
           Case{"scan", "a.rdbx", ""},
           Case{"scan", "a.points", ""},
           Case{"shots", "a.sodx", ""},
           Case{"trajectory", "a.pofx", ""},
           Case{"trajectory", "a.rdbx", ".pofx for a trajectory, found a name that a load reads as points"},
           Case{"shots", "a.SODX", ".sodx for shots, found a name that a load reads as points"},
           Case{"scan", "a.sodx", ".rdbx for points, found a name that a load reads as shots"},
           Case{"scan", "a.pofx", ".rdbx for points, found a name that a load reads as a trajectory"},
       }) {
    const std::string path = data.path(name);
    const std::string line = note.empty() ? "" : path + ": expected the extension " + note + "\n";
    EXPECT_EQ(run({"synth", kind, "--records", "2", "-o", path}).err, line) << name;
  }
}

TEST_F(Program, ImportUnderAnotherKindsNameIsNoted) {
  const support::Run result = run({"import", las, "-o", data.path("in.pofx")});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, HasSubstr("in.pofx: expected the extension .rdbx for points, found "));
}

TEST_F(Program, InvalidContentEndsWithOne) {
  expectRefused({"import", data.path("garbage.las"), "-o", out}, 1);
  expectRefused({"import", data.path("part.sbet"), "-o", out}, 1);
  expectRefused({"import", data.path("text.txt"), "-o", out}, 1);
  expectRefused({"info", data.path("garbage.rdbx")}, 1);
  expectRefused({"damage", data.path("garbage.rdbx"), "--set-records", "1"}, 1);
}

TEST_F(Program, OutputThatIsLostEndsWithOne) {
  ASSERT_EQ(run({"import", las, "-o", out}).status, 0);
  for (const char* const command : {" info ", " info --json ", " verify ", " info --help "}) {
    const std::string line = std::string(RDBTOOL_PROGRAM) + command + out + " >/dev/full";
    const support::Run result = support::runProgram("/bin/sh", {"-c", line}, data.root().string());
    EXPECT_EQ(result.status, 1) << command;
    EXPECT_EQ(result.err, "rdbtool: cannot write to standard output\n") << command;
  }
}

TEST_F(Program, NumbersAreDecimalAndWithoutASign) {
  for (const char* const number : {"-1", "010", "0x10", "+1", "1e3", ""}) {
    const std::string expected = std::string("expected a whole number, found ") + number + "\n";
    const support::Run records = run({"synth", "scan", "--records", number, "-o", out});
    EXPECT_EQ(records.status, 2) << number;
    EXPECT_EQ(records.err, "rdbtool: --records: " + expected);
    EXPECT_EQ(run({"synth", "scan", "--records", "1", "--seed", number, "-o", out}).err,
              "rdbtool: --seed: " + expected);
    EXPECT_EQ(run({"synth", "scan", "--records", "1", "--block-rows", number, "-o", out}).err,
              "rdbtool: --block-rows: " + expected);
  }
}

TEST_F(Program, EveryNumberIsDecimal) {
  const std::vector<std::pair<const char*, std::vector<std::string>>> commands = {
      {"--block-rows", {"import", las, "-o", out}},
      {"--pulse-rate", {"synth", "scan", "--records", "1", "-o", out}},
      {"--trajectory-rate", {"synth", "trajectory", "--records", "1", "-o", out}},
      {"--block", {"damage", las, "--attribute", "riegl.xyz", "--drop-block"}},
      {"--flip-byte", {"damage", las, "--attribute", "riegl.xyz"}},
      {"--shorten-block", {"damage", las, "--attribute", "riegl.xyz"}},
      {"--set-records", {"damage", las}},
      {"--set-block-rows", {"damage", las}},
      {"--set-application-id", {"damage", las}},
      {"--set-version", {"damage", las}},
      {"--flip-file-byte", {"damage", las}},
      {"--truncate", {"damage", las}}};
  for (const auto& [option, command] : commands) {
    for (const char* const number : {"010", "0x10", "1e3", ""}) {
      std::vector<std::string> arguments = command;
      arguments.insert(arguments.end(), {option, number});
      const support::Run result = run(arguments);
      EXPECT_EQ(result.status, 2) << option << number;
      EXPECT_EQ(result.err,
                std::string("rdbtool: ") + option + ": expected a whole number, found " + number + "\n");
    }
  }
}

TEST_F(Program, ANumberThatIsTooLargeIsNamedAsTyped) {
  const std::string unsignedRange = "expected a whole number from 0 to 18446744073709551615, found ";
  const std::string signedRange =
      "expected a whole number from -9223372036854775808 to 9223372036854775807, found ";
  EXPECT_EQ(run({"synth", "scan", "--records", "1", "--seed", "18446744073709551616", "-o", out}).err,
            "rdbtool: --seed: " + unsignedRange + "18446744073709551616\n");
  EXPECT_EQ(run({"damage", las, "--set-records", "-9223372036854775809"}).err,
            "rdbtool: --set-records: " + signedRange + "-9223372036854775809\n");
  EXPECT_EQ(run({"synth", "scan", "--records", "1", "--seed", "18446744073709551615", "-o", out}).status, 0);
}

TEST_F(Program, AnUnknownFormatIsNamed) {
  for (const char* const name : {"foo", "0", "LAS"}) {
    const support::Run result = run({"import", las, "--format", name, "-o", out});
    EXPECT_EQ(result.status, 2) << name;
    EXPECT_EQ(result.err, std::string("rdbtool: --format: expected las or sbet, found ") + name + "\n");
  }
}

TEST_F(Program, WrongUseEndsWithTwo) {
  const std::vector<std::vector<std::string>> commands = {
      {},
      {"frobnicate"},
      {"synth"},
      {"synth", "scan", "-o", out},
      {"synth", "scan", "--records", "many", "-o", out},
      {"import", las},
      {"import", las, "-o", out, "--format", "laz"},
      {"import", las, "-o", out, "--date", "May"},
      {"import", las, "-o", out, "--date", ""},
      {"import", las, "-o", las},
      {"import", las, "-o", data.root().string() + "/./in.las"},
      {"info"},
      {"verify"},
      {"damage", las},
      {"damage", las, "--flip-byte", "1"}};
  for (const std::vector<std::string>& command : commands) {
    expectRefused(command, 2);
  }
}

TEST_F(Program, WhatIsMissingIsNamedWithTheWayToTheHelp) {
  for (const std::vector<std::string>& command :
       std::vector<std::vector<std::string>>{{}, {"frobnicate"}, {"synth"}}) {
    EXPECT_EQ(run(command).err, "rdbtool: A subcommand is required; see --help\n");
  }
  EXPECT_EQ(run({"import", las}).err, "rdbtool: --output is required; see --help\n");
}

TEST_F(Program, InputThatCannotBeReadEndsWithThree) {
  for (const std::string& input : {data.path("absent"), data.root().string()}) {
    expectRefused({"import", input, "-o", out}, 3);
    expectRefused({"import", input, "-o", out, "--format", "sbet"}, 3);
    expectRefused({"info", input}, 3);
    expectRefused({"verify", input}, 3);
    expectRefused({"damage", input, "--truncate", "1"}, 3);
  }
}

TEST_F(Program, AnUnreadableInputEndsWithThree) {
  if (!support::bindStartedProgramsByPermissions()) {
    GTEST_SKIP() << "SKIPPED: permissions do not bind the superuser, and that right cannot be dropped here";
  }
  std::filesystem::permissions(las, std::filesystem::perms::none);
  expectRefused({"import", las, "-o", out}, 3);
}

TEST_F(Program, AnOutputThatCannotBeMadeEndsWithOne) {
  expectRefused({"import", las, "-o", data.path("absent/out.rdbx")}, 1);
  expectRefused({"import", las, "-o", data.root().string()}, 1);
  expectRefused({"synth", "scan", "--records", "1", "-o", data.path("absent/out.rdbx")}, 1);
}

TEST_F(Program, AFailedImportKeepsTheOutputThatWasThere) {
  std::ofstream(out) << "precious";
  EXPECT_EQ(run({"import", data.path("garbage.las"), "-o", out}).status, 1);
  EXPECT_EQ(std::filesystem::file_size(out), 8U);
}

TEST_F(Program, AnInterruptedSynthesisLeavesNothing) {
  const std::string line = std::string(RDBTOOL_PROGRAM) + " synth scan --records 400000000 -o " + out +
                           " & while kill -0 $! && ! test -e " + out +
                           ".*.partial; do :; done; kill $!; wait $!";
  const support::Run result = support::runProgram("/bin/sh", {"-c", line}, data.root().string());
  EXPECT_EQ(result.status, 128 + SIGTERM);
  EXPECT_THAT(result.err, StartsWith("rdbtool: interrupted before the database was written\n"));
  EXPECT_TRUE(std::filesystem::is_empty(folder.root())) << "something was left behind";
}

TEST_F(Program, InputReachedThroughALinkIsNotWrittenOver) {
  std::filesystem::create_symlink(las, data.path("link.las"));
  expectRefused({"import", las, "-o", data.path("link.las")}, 2);
}

TEST_F(Program, InfoListsTheContent) {
  run({"synth", "trajectory", "--records", "7", "-o", out, "--block-rows", "3"});
  const support::Run result = run({"info", out});
  EXPECT_THAT(result.out, HasSubstr("records     7\nblock rows  3\n"));
  EXPECT_THAT(result.out, HasSubstr("  riegl.pof_timestamp                  float64  x 1  unit \"s\"\n"));
  EXPECT_THAT(result.out, HasSubstr("metadata\n  riegl.geo_tag                        22 bytes\n"));
}

TEST_F(Program, InfoAsJsonIsOneObject) {
  run({"synth", "scan", "--records", "7", "-o", out, "--columns", "scan_angle", "--without",
       "riegl.geo_tag"});
  EXPECT_EQ(run({"info", "--json", out}).out, R"({
  "file": ")" + out + R"(",
  "version": 2,
  "catalogue_protected": true,
  "bytes": 655360,
  "records": 7,
  "block_rows": 1000000,
  "attributes": [
    {
      "name": "riegl.scan_angle",
      "type": "int16",
      "length": 1,
      "scale": 0.002,
      "offset": 0.0,
      "unit": "deg",
      "title": "",
      "description": "",
      "encoding": "raw",
      "blocks": 1,
      "encoded_blocks": 0,
      "bytes": 14,
      "bytes_per_record": 2.0,
      "minimum": [
        -29.97
      ],
      "maximum": [
        -29.61
      ],
      "missing": [
        0
      ]
    }
  ],
  "metadata": [
    {
      "name": "riegl.time_base",
      "bytes": 68
    }
  ]
}
)");
}

} // namespace
