// SPDX-License-Identifier: BSD-3-Clause
// `verify` finds every kind of damage that `damage` does.
#include "tests/apps/rdbtool/stored_content.h"
#include "tests/apps/rdbtool/tool_run.h"
#include "tests/support/temp_dir.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>

namespace {

using testing::HasSubstr;

/// The options of `damage`, and a part of the finding.
struct Harm {
  const char* name;
  std::vector<std::string> options;
  const char* finding;
};

void PrintTo(const Harm& row, std::ostream* out) {
  *out << row.name;
}

class Damage : public testing::Test {
 protected:
  Damage() {
    file = folder.path("scan.rdbx");
    support::runTool({"synth", "scan", "--records", "1000", "--block-rows", "300", "--columns",
                      "xyz,timestamp,class", "-o", file});
  }
  support::Run damaging(std::vector<std::string> options) {
    options.insert(options.begin(), {"damage", file});
    return support::runTool(options);
  }
  support::TempDir folder;
  std::string file;
};

class DamageNoticed : public Damage, public testing::WithParamInterface<Harm> {
 protected:
  void expectNoticed() {
    ASSERT_EQ(support::runTool({"verify", file}).status, 0);
    const support::Run done = damaging(GetParam().options);
    ASSERT_EQ(done.status, 0) << done.err;
    const support::Run check = support::runTool({"verify", file});
    EXPECT_EQ(check.status, 1);
    EXPECT_THAT(check.out, HasSubstr(GetParam().finding));
  }
};

TEST_P(DamageNoticed, ByTheCheck) {
  expectNoticed();
}

TEST_P(DamageNoticed, ByTheCheckOfAFileOfVersion1) {
  support::makeVersion1(file);
  expectNoticed();
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, DamageNoticed,
    testing::Values(
        Harm{"FlippedByte", {"--attribute", "riegl.xyz", "--block", "2", "--flip-byte", "7199"}, "riegl.xyz"},
        Harm{"ShortBlock",
             {"--attribute", "riegl.class", "--block", "1", "--shorten-block", "2"},
             "riegl.class"},
        Harm{"EmptyBlock",
             {"--attribute", "riegl.class", "--block", "3", "--shorten-block", "200"},
             "riegl.class"},
        Harm{"ShortBlockWithoutChecksum",
             {"--attribute", "riegl.class", "--shorten-block", "2", "--clear-checksum"},
             "riegl.class"},
        Harm{"MissingBlock",
             {"--attribute", "riegl.timestamp", "--block", "1", "--drop-block"},
             "riegl.timestamp"},
        Harm{"MissingLastBlock", {"--attribute", "riegl.timestamp", "--block", "3", "--drop-block"}, ""},
        Harm{"UnknownType", {"--attribute", "riegl.xyz", "--set-type", "float16"}, "float16"},
        Harm{"OtherType", {"--attribute", "riegl.xyz", "--set-type", "float32"}, "riegl.xyz"},
        Harm{"MoreRecords", {"--set-records", "1001"}, ""},
        Harm{"NegativeRecords", {"--set-records", "-1"}, "-1"},
        Harm{"BlockRows", {"--set-block-rows", "299"}, ""},
        Harm{"ApplicationId", {"--set-application-id", "1"}, ""},
        Harm{"NewerVersion", {"--set-version", "3"}, "3"},
        Harm{"MissingTable", {"--drop-table", "metadata"}, "metadata"},
        Harm{"FlippedFileByte", {"--flip-file-byte", "3"}, ""},
        Harm{"TruncatedFile", {"--truncate", "70000"}, ""}, Harm{"EmptyFile", {"--truncate", "0"}, ""}),
    [](const auto& harm) { return std::string(harm.param.name); });

TEST_F(Damage, AFlippedByteWithoutChecksumIsNotNoticedInVersion1) {
  support::makeVersion1(file);
  damaging({"--attribute", "riegl.xyz", "--flip-byte", "0", "--clear-checksum"});
  const support::Run check = support::runTool({"verify", file});
  EXPECT_EQ(check.status, 0);
  EXPECT_THAT(check.out, HasSubstr(", 1 block without a checksum\n"));
  damaging({"--attribute", "riegl.class", "--clear-checksum"});
  EXPECT_THAT(support::runTool({"verify", file}).out, HasSubstr(", 2 blocks without a checksum\n"));
}

TEST_F(Damage, AnotherVersionIsNoticed) {
  damaging({"--set-version", "1"}); // whose files have no checksum of the catalogue
  EXPECT_EQ(support::runTool({"verify", file}).status, 1);
  damaging({"--set-version", "2"});
  EXPECT_EQ(support::runTool({"verify", file}).status, 0);
  support::makeVersion1(file);
  damaging({"--set-version", "2"});
  EXPECT_EQ(support::runTool({"verify", file}).status, 1);
}

TEST_F(Damage, AMissingChecksumIsNoticedInVersion2) {
  damaging({"--attribute", "riegl.xyz", "--clear-checksum"});
  const support::Run check = support::runTool({"verify", file});
  EXPECT_EQ(check.status, 1);
  EXPECT_THAT(check.out, HasSubstr("column \"riegl.xyz\" of " + file + ", block 0: expected checksum "));
}

TEST_F(Damage, OneOfAThingIsTold) {
  support::runTool({"synth", "scan", "--records", "1", "--columns", "id", "-o", file});
  EXPECT_EQ(support::runTool({"verify", file}).out, file + ": 1 block, 8 bytes, 0 findings\n");
}

TEST_F(Damage, EveryFaultIsCounted) {
  damaging({"--attribute", "riegl.xyz", "--block", "1", "--flip-byte", "0"});
  damaging({"--attribute", "riegl.class", "--block", "2", "--flip-byte", "0"});
  EXPECT_THAT(support::runTool({"verify", file}).out, HasSubstr("2 findings"));
}

TEST_F(Damage, APlaceThatIsNotThereIsAFailure) {
  const std::vector<std::vector<std::string>> places = {
      {"--attribute", "riegl.rgba", "--flip-byte", "0"},
      {"--attribute", "riegl.xyz", "--block", "4", "--drop-block"},
      {"--attribute", "riegl.xyz", "--block", "3", "--flip-byte", "2400"},
      {"--attribute", "riegl.xyz", "--block", "3", "--shorten-block", "2401"},
      {"--attribute", "riegl.rgba", "--set-type", "int8"},
      {"--flip-file-byte", "100000000"},
      {"--truncate", "100000000"}};
  for (const auto& place : places) {
    EXPECT_EQ(damaging(place).status, 1);
  }
  EXPECT_EQ(support::runTool({"verify", file}).status, 0);
}

TEST_F(Damage, OnlyTablesOfADatabaseCanBeDropped) {
  EXPECT_EQ(damaging({"--drop-table", "sqlite_schema"}).status, 2);
}

TEST_F(Damage, ReachesAFileWhoseNameLooksLikeSomethingElse) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder.root());
  for (const char* name : {"file:scan.rdbx", ":memory:"}) {
    std::filesystem::copy_file(file, name);
    const support::Run done = support::runTool({"damage", name, "--set-records", "1001"});
    EXPECT_EQ(done.status, 0) << done.err;
    EXPECT_EQ(support::runTool({"verify", name}).status, 1) << name;
    EXPECT_EQ(support::runTool({"verify", file}).status, 0) << name;
  }
  std::filesystem::current_path(before);
}

} // namespace
