// SPDX-License-Identifier: BSD-3-Clause
// What `info` and `verify` print of version, protection, encodings and extents.
#include "apps/rdbtool/seeded_noise.h"
#include "container/write/writer.h"
#include "tests/apps/rdbtool/tool_run.h"
#include "tests/support/temp_dir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace {

using container::BlockEncoding;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

class Report : public testing::Test {
 protected:
  /// Two columns of two values and of one: coordinates on a grid, and reals as given, as many as there are records.
  void write(std::uint32_t records, BlockEncoding encoding, int version = 2) const {
    container::WriterSettings settings;
    settings.encoding = encoding;
    settings.version = version;
    settings.blockRows = 1000;
    container::Writer writer(file, settings);
    writer.addAttribute({"place", container::ElementType::float64, 2, 1, 0, "m"});
    writer.addAttribute({"count", container::ElementType::int16, 1, 0.5, 10});
    std::vector<double> places;
    std::vector<std::int16_t> counts;
    for (std::uint32_t i = 0; i < records; ++i) {
      places.insert(places.end(), {i * 7919 % 3000 * 0.001 + 500, -0.25 * i});
      counts.push_back(static_cast<std::int16_t>(i));
    }
    writer.write(records, {places.data(), counts.data()});
    writer.setMetadata("item", "text");
    writer.finish();
  }
  void writeValues(const std::vector<double>& values, BlockEncoding encoding = BlockEncoding::raw) const {
    container::WriterSettings settings;
    settings.encoding = encoding;
    container::Writer writer(file, settings);
    writer.addAttribute({"value", container::ElementType::float64, 1});
    writer.write(values.size(), {values.data()});
    writer.finish();
  }
  std::string info(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"info", file};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const support::Run run = support::runTool(arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    return run.out;
  }
  support::TempDir folder;
  std::string file = folder.path("a.rdbx");
  const std::string unprotected =
      "catalogue without a checksum, so damage to it may go unnoticed; to protect it: "
      "rdbtool upgrade " +
      file;
};

TEST_F(Report, TellsVersionEncodingAndExtents) {
  write(3000, BlockEncoding::raw);
  EXPECT_EQ(info(), file + R"(
version     2, protected by checksums
bytes       655360 (218.45 per record)
records     3000
block rows  1000
attributes
  place                                float64  x 2  unit "m"
    stored  raw, 48000 bytes (16.00 per record)
    minimum 500 -749.75
    maximum 502.999 0
  count                                int16    x 1  scale 0.5  offset 10
    stored  raw, 6000 bytes (2.00 per record)
    minimum 10
    maximum 1509.5
metadata
  item                                 4 bytes
)");
}

TEST_F(Report, NamesCodecFilterAndScaling) {
  for (const auto& [encoding, name] :
       {std::pair(BlockEncoding::lz4, "lz4"), {BlockEncoding::deflate, "deflate"}}) {
    std::vector<double> values;
    for (std::uint64_t i = 0; i < 3000; ++i) {
      values.push_back(static_cast<double>(rdbtool::mixBits(i) % 100000) * 0.001);
    }
    writeValues(values, encoding);
    EXPECT_THAT(info(),
                testing::ContainsRegex("stored  " + std::string(name) + "[a-z, ]*, scaled, [0-9]+ bytes"));
  }
}

TEST_F(Report, CountsBlocksOfAPartlyEncodedColumn) {
  std::vector<std::uint64_t> values(4000);
  for (std::size_t i = 0; i < 1000; ++i) {
    values[i] = rdbtool::mixBits(i); // one block that nothing compresses
  }
  container::WriterSettings settings;
  settings.blockRows = 1000;
  settings.encoding = BlockEncoding::lz4;
  container::Writer writer(file, settings);
  writer.addAttribute({"bits", container::ElementType::uint64, 1});
  writer.write(values.size(), {values.data()});
  writer.finish();
  EXPECT_THAT(info(), testing::ContainsRegex("stored  lz4[a-z, ]* \\(3 of 4 blocks\\), "));
}

TEST_F(Report, TellsThatTheCatalogueOfVersion1IsUnprotected) {
  write(3000, BlockEncoding::raw, 1);
  EXPECT_THAT(info(), testing::StartsWith(file + "\nversion     1, " + unprotected + "\nbytes "));
  EXPECT_THAT(info(), HasSubstr("    stored  raw, 48000 bytes (16.00 per record)\n  count "));
  EXPECT_THAT(info(), Not(HasSubstr("minimum")));
}

TEST_F(Report, OfNothingHasNoBytesPerRecord) {
  write(0, BlockEncoding::lz4);
  EXPECT_THAT(info(), HasSubstr("bytes       655360\nrecords     0\n"));
  EXPECT_THAT(info(), HasSubstr("    stored  raw, 0 bytes\n  count "));
  EXPECT_THAT(info({"--json"}), HasSubstr("\"bytes_per_record\": null,\n      \"minimum\": null,"));
}

TEST_F(Report, CountsMissingValuesAndShowsInfinities) {
  writeValues({1, notANumber, -infinite, infinite, notANumber});
  EXPECT_THAT(info(), HasSubstr("    minimum -inf\n    maximum inf\n    missing 2\n"));
  EXPECT_THAT(info({"--json"}), HasSubstr(R"("minimum": [
        "-inf"
      ],
      "maximum": [
        "inf"
      ],
      "missing": [
        2
      ])"));
}

TEST_F(Report, HasNoBoundsWhereAllIsMissing) {
  writeValues({notANumber});
  EXPECT_THAT(info(), HasSubstr("    minimum -\n    maximum -\n    missing 1\n"));
  EXPECT_THAT(info({"--json"}), HasSubstr("\"minimum\": [\n        null\n      ]"));
}

TEST_F(Report, AsJsonHasTheSameFacts) {
  write(3000, BlockEncoding::raw);
  EXPECT_THAT(info({"--json"}),
              HasSubstr("\"version\": 2,\n  \"catalogue_protected\": true,\n  \"bytes\": 655360,\n"));
  EXPECT_THAT(info({"--json"}), HasSubstr(R"("encoding": "raw",
      "blocks": 3,
      "encoded_blocks": 0,
      "bytes": 6000,
      "bytes_per_record": 2.0,
      "minimum": [
        10.0
      ],
      "maximum": [
        1509.5
      ],
      "missing": [
        0
      ])"));
  write(3000, BlockEncoding::raw, 1);
  EXPECT_THAT(info({"--json"}), HasSubstr("\"version\": 1,\n  \"catalogue_protected\": false,"));
}

/// The extents stand in tables of their own: blocks that cannot be read change nothing.
TEST_F(Report, ReadsNoBlockForExtents) {
  write(3000, BlockEncoding::raw);
  const std::string before = info();
  for (const char* name : {"place", "count"}) {
    for (const char* block : {"0", "1", "2"}) {
      support::runTool({"damage", file, "--attribute", name, "--block", block, "--flip-byte", "77"});
    }
  }
  EXPECT_EQ(info(), before);
}

TEST_F(Report, OfADamagedHeadSaysSoAndGoesOn) {
  write(3000, BlockEncoding::lz4);
  support::runTool({"damage", file, "--attribute", "place", "--block", "0", "--flip-byte", "9"});
  EXPECT_THAT(info(), HasSubstr("    stored  damaged, "));
  EXPECT_THAT(info(), HasSubstr("    maximum 502.999 0\n"));
}

class Check : public Report {};

TEST_F(Check, TellsThatTheCatalogueOfVersion1IsUnprotected) {
  write(3000, BlockEncoding::raw, 1);
  const support::Run run = support::runTool({"verify", file});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out,
            file + ": version 1, " + unprotected + "\n" + file + ": 6 blocks, 54000 bytes, 0 findings\n");
}

TEST_F(Check, DecodesEveryPiece) {
  write(3000, BlockEncoding::deflate);
  EXPECT_EQ(support::runTool({"verify", file}).status, 0);
  support::runTool({"damage", file, "--attribute", "count", "--block", "2", "--flip-byte", "30"});
  const support::Run run = support::runTool({"verify", file});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, HasSubstr("column \"count\" of " + file + ", block 2"));
  EXPECT_THAT(run.out, EndsWith(", 1 finding\n"));
}

} // namespace
