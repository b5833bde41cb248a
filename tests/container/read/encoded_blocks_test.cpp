// SPDX-License-Identifier: BSD-3-Clause
// Encoded blocks give the values that were written, whatever is asked of them, and name the piece that is damaged.
#include "container/read/verify.h"
#include "tests/container/corpus/every_type.h"
#include "tests/container/database_file.h"

#include <cstring>
#include <gmock/gmock.h>
#include <ostream>

namespace {

using namespace containertest;
using container::BlockEncoding;

/// 120,000 records in blocks of 50,000, which take several pieces each: points of a grid of 1 mm, times, noise.
class EncodedBlocks : public testing::TestWithParam<BlockEncoding> {
 protected:
  void SetUp() override {
    std::uint64_t state = 5;
    for (std::size_t i = 0; i < points.size(); ++i) {
      points[i] = static_cast<double>(1000 + i * 37 % 100'000) * 0.001;
      noise[i / 3] = static_cast<std::uint16_t>((state = state * 6364136223846793005U + 1) >> 50);
    }
    for (std::size_t i = 0; i < times.size(); ++i) {
      times[i] = 300'000 + static_cast<double>(i) / 300'000;
    }
    Writer writer(path, {50'000, true, 2, GetParam()});
    writer.addAttribute({"point", ElementType::float64, 3}, {{0.001, 0}, {0.001, 0}, {0.001, 0}});
    writer.addAttribute({"time", ElementType::float64});
    writer.addAttribute({"noise", ElementType::uint16, 1, 0.5, 1});
    writer.write(records, {points.data(), times.data(), noise.data()});
    writer.finish();
  }
  std::vector<double> expectedNoise() const {
    std::vector<double> values(noise.begin(), noise.end());
    for (double& value : values) {
      value = value * 0.5 + 1;
    }
    return values;
  }
  std::string errorOfReading(const std::string& column) {
    return errorOf(directory, [&] { readColumn<double>(path, column, records); });
  }
  static constexpr std::size_t records = 120'000;
  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
  std::vector<double> points = std::vector<double>(3 * records);
  std::vector<double> times = std::vector<double>(records);
  std::vector<std::uint16_t> noise = std::vector<std::uint16_t>(records);
};

TEST_P(EncodedBlocks, AreSmallerThanRawOnes) {
  const Database database(path);
  EXPECT_EQ(database.storage("point").encodedBlocks, 3U);
  EXPECT_LT(database.storage("point").bytes, points.size() * sizeof(double) / 3);
  const std::string codec = GetParam() == BlockEncoding::lz4 ? "lz4" : "deflate";
  EXPECT_THAT(database.encoding("point", 1), testing::MatchesRegex(codec + ", .*shuffle, scaled"));
}

TEST_P(EncodedBlocks, GiveTheWrittenValuesInAnyNumber) {
  for (const std::uint64_t atOnce : {200'000U, 50'000U, 7'001U}) {
    EXPECT_EQ(readColumn<double>(path, "point", atOnce), points) << atOnce;
    EXPECT_EQ(readColumn<double>(path, "time", atOnce), times) << atOnce;
    EXPECT_EQ(readColumn<double>(path, "noise", atOnce), expectedNoise()) << atOnce;
  }
}

TEST_P(EncodedBlocks, GiveConvertedValues) {
  EXPECT_EQ(readColumn<float>(path, "point", 33'333), std::vector<float>(points.begin(), points.end()));
}

TEST_P(EncodedBlocks, LeaveTheGapsOfAStrideAlone) {
  constexpr std::size_t stride = 5;
  for (const unsigned threads : {1U, 2U}) {
    std::vector<double> found(stride * records, -7);
    Cursor cursor(Database(path, threads));
    cursor.bind("point", ElementType::float64, found.data(), stride * sizeof(double));
    cursor.bind("time", ElementType::float64, found.data() + 3, stride * sizeof(double));
    ASSERT_EQ(cursor.next(records), records);
    for (std::size_t i = 0; i < records; ++i) {
      ASSERT_EQ(std::memcmp(&found[stride * i], &points[3 * i], 3 * sizeof(double)), 0) << i;
      ASSERT_EQ(found[stride * i + 3], times[i]) << i;
      ASSERT_EQ(found[stride * i + 4], -7) << i;
    }
  }
}

TEST_P(EncodedBlocks, GiveARangeInTheMiddle) {
  Cursor cursor{Database(path)};
  ASSERT_EQ(cursor.next(74'321), 74'321U);
  std::vector<double> found(3000);
  cursor.bind("point", ElementType::float64, found.data());
  ASSERT_EQ(cursor.next(1000), 1000U);
  EXPECT_EQ(std::memcmp(found.data(), &points[3 * 74'321], found.size() * sizeof(double)), 0);
}

TEST_P(EncodedBlocks, OfFragmentedFilesAreReadToo) {
  execute(
      path,
      "CREATE TEMP TABLE kept AS SELECT * FROM block WHERE number < 2; DELETE FROM block WHERE number < 2;"
      "INSERT INTO block SELECT * FROM kept ORDER BY attribute DESC, number");
  EXPECT_EQ(readColumn<double>(path, "point", 200'000), points);
  EXPECT_EQ(readColumn<double>(path, "point", 7'001), points);
}

TEST_P(EncodedBlocks, AreSharedByThreads) {
  std::vector<double> values; // of one block: 11 MB, enough for threads to take part
  for (int i = 0; i < 4; ++i) {
    values.insert(values.end(), points.begin(), points.end());
  }
  writeColumn(path, {"a", ElementType::float64, 3}, values, {1'000'000, true, 2, GetParam()});
  for (const unsigned threads : {1U, 2U, 5U}) {
    std::vector<double> found(values.size());
    Cursor cursor(Database(path, threads));
    cursor.bind("a", ElementType::float64, found.data());
    ASSERT_EQ(cursor.next(values.size()), values.size() / 3);
    EXPECT_EQ(found, values);
  }
}

TEST_P(EncodedBlocks, NameTheDamagedPiece) {
  execute(path, "UPDATE block SET data = CAST(substr(data, 1, length(data) - 1) || x'a5' AS BLOB)"
                " WHERE attribute = 1 AND number = 1");
  EXPECT_THAT(errorOfReading("point"),
              testing::MatchesRegex(
                  "the database is damaged \\(column \"point\" of scan.rdbx, block 1: piece [0-9]+: "
                  "expected checksum [0-9]+, found [0-9]+\\)"));
  EXPECT_EQ(readColumn<double>(path, "time", records), times);
}

TEST_P(EncodedBlocks, NameTheDamagedHeader) {
  execute(
      path,
      "UPDATE block SET data = CAST(x'ff' || substr(data, 2) AS BLOB) WHERE attribute = 1 AND number = 1");
  EXPECT_THAT(
      errorOfReading("point"),
      testing::MatchesRegex("the database is damaged \\(column \"point\" of scan.rdbx, block 1: header of "
                            "pieces: expected [0-9]+ pieces of [0-9]+ records for 50000 records, found "
                            "[0-9]+\\)"));
}

TEST_P(EncodedBlocks, ChecksumOfTheHeaderIsPartOfTheBlocks) {
  execute(path, "UPDATE block SET data = CAST(substr(data, 1, 12) || x'00' || substr(data, 14) AS BLOB)"
                " WHERE attribute = 1 AND number = 1");
  EXPECT_THAT(
      errorOfReading("point"),
      testing::MatchesRegex("the database is damaged \\(column \"point\" of scan.rdbx, block 1: expected "
                            "checksum [0-9]+, found [0-9]+\\)"));
}

TEST_P(EncodedBlocks, AreVerifiedPieceByPiece) {
  EXPECT_EQ(container::verify(path, [](const auto&, const auto& text) { FAIL() << text; }).blocks, 9U);
  execute(path, "UPDATE block SET data = CAST(substr(data, 1, length(data) - 1) || x'a5' AS BLOB)"
                " WHERE attribute = 2 AND number = 0");
  std::string found;
  const auto seen = container::verify(path, [&](const auto&, const std::string& text) { found = text; });
  EXPECT_EQ(seen.findings, 1U);
  EXPECT_THAT(found, testing::HasSubstr("column \"time\""));
}

INSTANTIATE_TEST_SUITE_P(As, EncodedBlocks, testing::Values(BlockEncoding::lz4, BlockEncoding::deflate),
                         [](const auto& row) {
                           return std::string(row.param == BlockEncoding::lz4 ? "lz4" : "deflate");
                         });

template <class Element>
void expectSameBits(const std::string& path, BlockEncoding encoding) {
  std::vector<Element> values;
  for (int i = 0; i < 2000; ++i) {
    values.push_back(corpus::valueOf<Element>(static_cast<std::uint64_t>(i) % 50, 1));
  }
  writeColumn(path, {"a", container::elementTypeOf<Element>}, values, {700, true, 2, encoding});
  EXPECT_EQ(Database(path).storage("a").encodedBlocks, 3U);
  const std::vector<Element> found = readColumn<Element>(path, "a");
  ASSERT_EQ(found.size(), values.size());
  EXPECT_EQ(std::memcmp(found.data(), values.data(), found.size() * sizeof(Element)), 0);
}

TEST(EncodedValues, OfEveryTypeComeBackBitForBit) {
  const support::TempDir directory;
  for (const BlockEncoding encoding : {BlockEncoding::lz4, BlockEncoding::deflate}) {
    for (std::size_t type = 0; type < container::elementTypeCount; ++type) {
      container::visitElement(static_cast<ElementType>(type),
                              [&]<class Element>(std::type_identity<Element>) {
                                expectSameBits<Element>(directory.path("a.rdbx"), encoding);
                              });
    }
  }
}

TEST(EncodedValues, ThatAreNoiseAreStoredRaw) {
  const support::TempDir directory;
  std::vector<std::uint64_t> values(5000);
  std::uint64_t state = 1;
  for (std::uint64_t& value : values) {
    state = state * 6364136223846793005U + 1442695040888963407U;
    value = state ^ (state >> 31);
  }
  writeColumn(directory.path("a.rdbx"), {"a", ElementType::uint64}, values,
              {1000, true, 2, BlockEncoding::deflate});
  EXPECT_EQ(Database(directory.path("a.rdbx")).storage("a").encodedBlocks, 0U);
  EXPECT_EQ(Database(directory.path("a.rdbx")).encoding("a", 4), "raw");
  EXPECT_EQ(readColumn<std::uint64_t>(directory.path("a.rdbx"), "a"), values);
}

} // namespace
