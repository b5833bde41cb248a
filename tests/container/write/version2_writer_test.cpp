// SPDX-License-Identifier: BSD-3-Clause
// The writer of version 2: its tables and rows, its encoded blocks, and what it refuses.
#include "container/read/verify.h"
#include "tests/container/database_file.h"
#include "tests/support/resource_limit.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <ostream>
#include <random>

namespace {

using namespace containertest;
using container::BlockEncoding;
using testing::HasSubstr;
using testing::Not;

class WritingVersion2 : public testing::Test {
 protected:
  std::size_t fileCount() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(directory.root()), {}));
  }
  std::string errorOfSettings(const WriterSettings& settings) {
    return errorOf(directory, [&] { Writer(path, settings); });
  }
  /// Writes reals in blocks of 1000 as LZ4, with a hint; returns how the first is encoded.
  std::string encodingWith(const std::vector<double>& values,
                           const std::vector<container::SourceScaling>& hint) {
    Writer writer(path, {1000, true, 2, BlockEncoding::lz4});
    writer.addAttribute({"a", ElementType::float64}, hint);
    writer.write(values.size(), {values.data()});
    writer.finish();
    EXPECT_EQ(readColumn<double>(path, "a"), values);
    return Database(path).encoding("a", 0);
  }
  /// Multiples of a number that is no power of ten, in no order.
  static std::vector<double> multiplesOf(double scale, double offset) {
    std::vector<double> values(3000);
    std::mt19937 source(1);
    for (double& value : values) {
      value = static_cast<double>(source() % 1'000'000) * scale + offset;
    }
    return values;
  }
  static std::vector<unsigned char> noise(std::size_t bytes) {
    std::vector<unsigned char> values(bytes);
    std::mt19937 source(1);
    std::generate(values.begin(), values.end(), [&] { return static_cast<unsigned char>(source()); });
    return values;
  }
  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
};

TEST_F(WritingVersion2, MakesTheDocumentedTables) {
  writeSample(path, WriterSettings{4});
  // As other programs that write such files find them documented, but for the blanks.
  execute(path, "CREATE TEMP TABLE expect(holds INTEGER CHECK (holds));"
                "INSERT INTO expect SELECT group_concat(replace(replace(sql, ' ', ''), char(10), ''), ';') = "
                "'CREATETABLEdatabase(recordsINTEGERNOTNULL,block_rowsINTEGERNOTNULL,"
                "catalogue_checksumINTEGERNOTNULL,extent_checksumINTEGER);"
                "CREATETABLEblock_index(attributeINTEGERNOTNULL,numberINTEGERNOTNULL,encodingTEXT,"
                "checksumINTEGERNOTNULL,bytesINTEGERNOTNULL,PRIMARYKEY(attribute,number))WITHOUTROWID;"
                "CREATETABLEextent(attributeINTEGERNOTNULL,numberINTEGERNOTNULL,componentINTEGERNOTNULL,"
                "minimumREAL,maximumREAL,missingINTEGERNOTNULL,"
                "PRIMARYKEY(attribute,number,component))WITHOUTROWID;"
                "CREATETABLEattribute(idINTEGERPRIMARYKEY,nameTEXTNOTNULLUNIQUE,typeTEXTNOTNULL,"
                "lengthINTEGERNOTNULLDEFAULT1,scaleREALNOTNULLDEFAULT1,offsetREALNOTNULLDEFAULT0,"
                "unitTEXT,titleTEXT,descriptionTEXT);"
                "CREATETABLEblock(attributeINTEGERNOTNULLREFERENCESattribute(id),numberINTEGERNOTNULL,"
                "checksumINTEGER,dataBLOBNOTNULL,PRIMARYKEY(attribute,number));"
                "CREATETABLEmetadata(nameTEXTPRIMARYKEY,valueTEXTNOTNULL)'"
                " FROM sqlite_schema WHERE type = 'table'");
}

TEST_F(WritingVersion2, StatesEveryBlockAndItsExtents) {
  writeSample(path, WriterSettings{4});
  execute(path, "CREATE TEMP TABLE expect(holds INTEGER CHECK (holds));"
                "INSERT INTO expect SELECT user_version = 2 FROM pragma_user_version;"
                "INSERT INTO expect SELECT page_size = 65536 FROM pragma_page_size;"
                "INSERT INTO expect SELECT records = 10 AND block_rows = 4 FROM database;"
                "INSERT INTO expect SELECT count(*) = 6 AND sum(b.checksum = i.checksum) = 6"
                " AND sum(length(data) = bytes) = 6 AND sum(encoding IS NULL) = 6"
                " FROM block b JOIN block_index i USING (attribute, number);"
                "INSERT INTO expect SELECT count(*) = 12 AND sum(missing) = 0 FROM extent;"
                "INSERT INTO expect SELECT minimum = 14 AND maximum = 23 FROM extent"
                " WHERE attribute = 1 AND number = 1 AND component = 2");
}

TEST_F(WritingVersion2, NamesTheEncodingOfPieces) {
  writeColumn(path, {"a", ElementType::uint16}, std::vector<std::uint16_t>(5000, 7),
              {2000, true, 2, BlockEncoding::deflate});
  execute(path,
          "CREATE TEMP TABLE expect(holds INTEGER CHECK (holds));"
          "INSERT INTO expect SELECT count(*) = 3 AND sum(encoding = 'pieces') = 3"
          " AND sum(length(data) = bytes) = 3 FROM block b JOIN block_index i USING (attribute, number)");
}

TEST_F(WritingVersion2, IsTheSameFileOnAnyNumberOfThreads) {
  std::vector<double> values = multiplesOf(0.001, 0);
  const auto writtenBy = [&](unsigned int threads) {
    Writer writer(path, {100, true, 2, BlockEncoding::lz4, threads});
    writer.addAttribute({"a", ElementType::float64});
    writer.addAttribute({"b", ElementType::float64, 2});
    writer.write(700, {values.data(), values.data()});
    writer.write(750, {values.data(), values.data()});
    writer.finish();
    return bytesOf(path);
  };
  const std::vector<char> alone = writtenBy(1);
  for (const unsigned int threads : {0U, 2U, 7U, 1000U}) {
    EXPECT_EQ(writtenBy(threads) == alone, true) << threads;
  }
}

TEST_F(WritingVersion2, TakesTheScaleOfTheSourceFirst) {
  const std::vector<double> values = multiplesOf(0.00123, 17.5);
  EXPECT_THAT(encodingWith(values, {}), Not(HasSubstr("scaled")));
  EXPECT_THAT(encodingWith(values, {{0.00123, 17.5}}), HasSubstr("scaled"));
}

TEST_F(WritingVersion2, FindsPowersOfTenWithoutAHint) {
  EXPECT_THAT(encodingWith(multiplesOf(0.001, 0), {}), HasSubstr("scaled"));
}

TEST_F(WritingVersion2, AWrongScaleOfTheSourceChangesNoValue) {
  const std::vector<double> values = multiplesOf(0.00123, 17.5);
  for (const double scale : {0.001, 0.0, -1.0, 1e-300, 1.0 / 0.0}) {
    EXPECT_THAT(encodingWith(values, {{scale, 0.5}}), Not(HasSubstr("scaled"))) << scale;
  }
}

TEST_F(WritingVersion2, ScalesNoIntegers) {
  std::vector<std::int64_t> values(3000);
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = static_cast<std::int64_t>(i) * 1000;
  }
  Writer writer(path, {1000, true, 2, BlockEncoding::deflate});
  writer.addAttribute({"a", ElementType::int64}, {{1000, 0}});
  writer.write(values.size(), {values.data()});
  writer.finish();
  EXPECT_EQ(readColumn<std::int64_t>(path, "a"), values);
  EXPECT_THAT(Database(path).encoding("a", 0), Not(HasSubstr("scaled")));
}

TEST_F(WritingVersion2, LeavesNothingWhileBlocksAreBeingEncoded) {
  {
    Writer writer(path, {100'000, true, 2, BlockEncoding::deflate, 2});
    writer.addAttribute({"a", ElementType::uint8});
    writer.write(1'000'000, {noise(1'000'000).data()});
  }
  EXPECT_EQ(fileCount(), 0U);
}

TEST_F(WritingVersion2, FullDiskIsReportedWhileBlocksAreBeingEncoded) {
  const auto handler = signal(SIGXFSZ, SIG_IGN);
  const support::ResourceLimit limit(RLIMIT_FSIZE, 1'000'000);
  const std::string error = errorOf(directory, [&] {
    writeColumn(path, {"a", ElementType::uint8}, noise(40'000'000),
                {1'000'000, true, 2, BlockEncoding::lz4, 2});
  });
  signal(SIGXFSZ, handler);
  EXPECT_THAT(error, testing::StartsWith(
                         "cannot write the database (scan.rdbx: expected room for its content, found: "));
  EXPECT_EQ(fileCount(), 0U);
}

TEST_F(WritingVersion2, RefusesSettingsThatNoReaderTakes) {
  const std::string what = "the database cannot be written so (scan.rdbx: expected ";
  EXPECT_EQ(errorOfSettings({4, true, 0}), what + "version 1 or 2, found 0)");
  EXPECT_EQ(errorOfSettings({4, true, 3}), what + "version 1 or 2, found 3)");
  EXPECT_EQ(errorOfSettings({4, false}), what + "checksums, which version 2 requires, found none)");
  EXPECT_EQ(errorOfSettings({4, true, 1, BlockEncoding::lz4}),
            what + "raw blocks, as version 1 has no others, found encoded ones)");
  EXPECT_EQ(errorOfSettings({0}), what + "at least one record per block, found 0)");
}

TEST_F(WritingVersion2, RefusesAHintForOtherComponents) {
  EXPECT_EQ(
      errorOf(directory,
              [&] {
                Writer(path).addAttribute({"a", ElementType::float64, 3}, {{}, {}});
              }),
      "the database cannot be written so (column \"a\": expected the scale of 3 components, or of none, "
      "found 2)");
}

TEST_F(WritingVersion2, RefusesMoreTextThanReadersTake) {
  const std::string half((16 << 20) - 1, 'x');
  Writer writer(path);
  writer.setMetadata("a", half + half);
  writer.setMetadata("a", half);
  writer.setMetadata("b", half);
  EXPECT_EQ(
      errorOf(directory, [&] { writer.setMetadata("b", half + 'x'); }),
      "the database cannot be written so (item \"b\": expected at most 33554432 bytes of names and values of "
      "all items, found 33554433)");
  EXPECT_EQ(
      errorOf(directory,
              [&] {
                writer.addAttribute({"b", ElementType::int8, 1, 1, 0, half, half, "xx"});
              }),
      "the database cannot be written so (column \"b\": expected at most 33554432 bytes of texts of all "
      "attributes, found 33554433)");
  writer.addAttribute({"b", ElementType::int8, 1, 1, 0, half, half, "x"});
  writer.finish();
  EXPECT_EQ(Database(path).item("b"), half);
  EXPECT_EQ(Database(path).require("b").title, half);
}

TEST_F(WritingVersion2, Version1TakesTextOfAnyLength) {
  Writer writer(path, version1(4));
  writer.setMetadata("a", std::string(33 << 20, 'x'));
  writer.finish();
  EXPECT_EQ(Database(path).item("a")->size(), 33U << 20);
}

TEST_F(WritingVersion2, VerifyFindsEveryFault) {
  writeSample(path, WriterSettings{4});
  execute(path, "UPDATE block SET checksum = 17 WHERE attribute = 1 AND number = 1;"
                "UPDATE block SET data = x'00000000' WHERE attribute = 2 AND number = 1;"
                "UPDATE extent SET minimum = -5 WHERE attribute = 1 AND number = 0 AND component = 1");
  std::vector<std::string> found;
  const auto seen = container::verify(path, [&](const auto&, const auto& details) {
    found.push_back(details.substr(0, details.find(" of ")));
  });
  EXPECT_THAT(found, testing::ElementsAre("column \"riegl.xyz\"", "column \"riegl.class\"", "extents"));
  EXPECT_EQ(seen.findings, 3U);
  EXPECT_EQ(seen.blocks, 6U);
}

} // namespace
