// SPDX-License-Identifier: BSD-3-Clause
// Imports with every encoding of the blocks.
#include "apps/rdbtool/seeded_noise.h"
#include "tests/apps/rdbtool/las_file.h"
#include "tests/apps/rdbtool/stored_content.h"
#include "tests/apps/rdbtool/tool_run.h"
#include "tests/support/temp_dir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

class ImportEncoding : public testing::Test {
 protected:
  ImportEncoding() {
    support::LasFile file(4, 7);
    file.scale = {0.00025, 0.0003, 0.0007}; // which nobody guesses
    file.offset = {512345.5, 5412345.25, 0};
    for (unsigned i = 0; i < 2000; ++i) {
      const auto noise = static_cast<std::int32_t>(rdbtool::mixBits(i) % 1000000);
      support::LasPoint point;
      point.x = 4 * noise;
      point.y = -noise;
      point.z = noise / 7;
      point.intensity = i;
      point.gpsTime = 259210.25 + i * 1e-5;
      file.with(point);
    }
    las = file.writeTo(folder.path("in.las"));
  }
  std::string imported(const std::string& name, const std::vector<std::string>& more) const {
    std::vector<std::string> arguments = {"import", las, "-o", folder.path(name)};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const support::Run run = support::runTool(arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    return folder.path(name);
  }
  support::TempDir folder;
  std::string las;
};

TEST_F(ImportEncoding, KeepsTheValues) {
  const support::StoredContent expected = support::storedContent(imported("default", {}));
  for (const char* encoding : {"raw", "lz4", "deflate"}) {
    EXPECT_EQ(support::storedContent(imported(encoding, {"--encoding", encoding})), expected) << encoding;
    EXPECT_EQ(support::runTool({"verify", folder.path(encoding)}).status, 0);
  }
}

TEST_F(ImportEncoding, TakesTheIntegersOfTheSource) {
  const std::string direct = imported("direct", {"--encoding", "lz4"});
  const std::string stored = "riegl.xyz [^\n]*\n    stored  lz4[a-z, ]*";
  EXPECT_THAT(support::runTool({"info", direct}).out, ContainsRegex(stored + ", scaled, [0-9]"));
}

TEST_F(ImportEncoding, CopiesKeepTheIntegersThatTheirInputHas) {
  const std::string integers = "riegl.xyz [^\n]*\n    stored  deflate[a-z, ]*, scaled, [0-9]";
  const std::string copy = folder.path("copy");
  support::runTool({"recode", imported("lz4", {"--encoding", "lz4"}), "-o", copy, "--encoding", "deflate"});
  EXPECT_THAT(support::runTool({"info", copy}).out, ContainsRegex(integers));
  support::runTool({"recode", imported("raw", {"--encoding", "raw"}), "-o", copy, "--encoding", "deflate"});
  EXPECT_THAT(support::runTool({"info", copy}).out, Not(ContainsRegex(integers)));
}

TEST_F(ImportEncoding, WithoutChecksumsIsRawAndVersion1) {
  const std::string info = support::runTool({"info", imported("old", {"--no-checksums"})}).out;
  EXPECT_THAT(info, HasSubstr("\nversion     1, "));
  EXPECT_THAT(info, HasSubstr("    stored  raw, 48000 bytes (24.00 per record)\n"));
}

TEST_F(ImportEncoding, OfAnUnknownNameIsRefused) {
  const support::Run run = support::runTool({"import", las, "-o", folder.path("out"), "--encoding", "zstd"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, "rdbtool: --encoding: expected raw, lz4 or deflate, found zstd\n");
}

} // namespace
