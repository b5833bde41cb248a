// SPDX-License-Identifier: BSD-3-Clause
// Files of version 2: what their checksums notice, with the error text that a user reads, and what the tables state.
#include "container/read/verify.h"
#include "tests/container/database_file.h"

#include <gmock/gmock.h>
#include <limits>
#include <ostream>

namespace {

using namespace containertest;
using container::BlockEncoding;
using testing::ElementsAre;

struct Case {
  std::string name;
  std::string damage; ///< SQL run on the sample
  std::string error;  ///< of opening and reading it
};

void PrintTo(const Case& row, std::ostream* out) {
  *out << row.damage;
}

const std::string wrongTable = "the file is not a database of this kind (table ";
const std::string wrongCatalogue = "the catalogue of the database is wrong (";
const std::string damaged = "the database is damaged (";
const std::string tooLarge = "cannot read the database (";
const std::string otherChecksum = damaged + "catalogue of scan.rdbx: expected checksum 569117891, found ";

const Case cases[] = {
    {"NoBlockIndex", "DROP TABLE block_index",
     wrongTable + "\"block_index\" of scan.rdbx: expected a table, found none)"},
    {"NoExtentTable", "DROP TABLE extent",
     wrongTable + "\"extent\" of scan.rdbx: expected a table, found none)"},
    {"NoCatalogueChecksum", "ALTER TABLE database DROP COLUMN catalogue_checksum",
     wrongTable + "\"database\" of scan.rdbx: expected a column \"catalogue_checksum\", found none)"},
    {"VersionOne", "PRAGMA user_version = 1",
     wrongTable + "\"database\" of scan.rdbx: expected no column \"catalogue_checksum\" in format version 1, "
                  "found one)"},
    {"VersionOneWithBlockIndex",
     "PRAGMA user_version = 1; ALTER TABLE database DROP COLUMN catalogue_checksum; ALTER TABLE database "
     "DROP "
     "COLUMN extent_checksum; DROP TABLE extent",
     wrongTable + "\"block_index\" of scan.rdbx: expected no such table in format version 1, found a table)"},
    {"VersionOneWithExtents",
     "PRAGMA user_version = 1; ALTER TABLE database DROP COLUMN catalogue_checksum; ALTER TABLE database "
     "DROP "
     "COLUMN extent_checksum; DROP TABLE block_index",
     wrongTable + "\"extent\" of scan.rdbx: expected no such table in format version 1, found a table)"},
    {"OtherCatalogueChecksum", "UPDATE database SET catalogue_checksum = 1",
     damaged + "catalogue of scan.rdbx: expected checksum 1, found 569117891)"},
    {"CatalogueChecksumAsText", "UPDATE database SET catalogue_checksum = 'x'",
     wrongCatalogue + "table \"database\" of scan.rdbx: expected a checksum of the catalogue of 0 to "
                      "4294967295, found the text \"x\")"},
    {"OtherName", "UPDATE attribute SET name = 'riegl.classy' WHERE id = 2", otherChecksum + "*"},
    {"OtherScale", "UPDATE attribute SET scale = 2 WHERE id = 1", otherChecksum + "*"},
    {"OtherOffset", "UPDATE attribute SET \"offset\" = 2 WHERE id = 1", otherChecksum + "*"},
    {"OtherUnit", "UPDATE attribute SET unit = 'km' WHERE id = 1", otherChecksum + "*"},
    {"EmptyUnitForNone", "UPDATE attribute SET unit = '' WHERE id = 2", otherChecksum + "*"},
    {"OtherItem", "UPDATE metadata SET value = '[]'", otherChecksum + "*"},
    {"NoItem", "DELETE FROM metadata", otherChecksum + "*"},
    {"OneItemMore", "INSERT INTO metadata VALUES ('a', '')", otherChecksum + "*"},
    {"ItemAsBlob", "UPDATE metadata SET value = x'00'",
     damaged + "item \"riegl.time_base\" of scan.rdbx: expected a text, found a blob)"},
    {"NullAsName", "INSERT INTO metadata VALUES (NULL, '')",
     wrongCatalogue + "table \"metadata\" of scan.rdbx: expected a text as name, found null)"},
    {"MuchMetadata", "INSERT INTO metadata VALUES ('much', hex(zeroblob(16777216)))",
     wrongCatalogue + "table \"metadata\" of scan.rdbx: expected at most 33554432 bytes of names and values, "
                      "found more)"},
    {"LargeItem", "INSERT INTO metadata VALUES ('much', hex(zeroblob(17000000)))",
     tooLarge + "item \"much\" of scan.rdbx: expected values of at most 33554432 bytes, found a larger one)"},
    {"LargeItemName", "INSERT INTO metadata VALUES (hex(zeroblob(17000000)), '')",
     tooLarge +
         "table \"metadata\" of scan.rdbx: expected values of at most 33554432 bytes, found a larger one)"},
    {"LargeTitle", "UPDATE attribute SET title = hex(zeroblob(17000000)) WHERE id = 2",
     tooLarge +
         "table \"attribute\" of scan.rdbx: expected values of at most 33554432 bytes, found a larger one)"},
    {"LargeTitles", "UPDATE attribute SET title = hex(zeroblob(16000000))",
     wrongCatalogue +
         "table \"attribute\" of scan.rdbx: expected at most 33554432 bytes of text, found more)"},
    {"LargeEncoding", "UPDATE block_index SET encoding = hex(zeroblob(17000000)) WHERE number = 1",
     tooLarge +
         "table \"block_index\" of scan.rdbx: expected values of at most 33554432 bytes, found a larger "
         "one)"},
    {"LargeMinimum", "UPDATE extent SET minimum = 'x' || hex(zeroblob(17000000)) WHERE number = 1",
     tooLarge +
         "table \"extent\" of scan.rdbx: expected values of at most 33554432 bytes, found a larger one)"},
    {"OtherRecords", "UPDATE database SET records = 9",
     wrongCatalogue + "column \"riegl.xyz\" of scan.rdbx, block 2: expected 24 bytes, found 48)"},
    {"ManyRecords", "UPDATE database SET records = 9223372036854775807",
     wrongCatalogue + "column \"riegl.xyz\" of scan.rdbx, block 2: expected 96 bytes, found 48)"},
    {"UnknownEncoding", "UPDATE block_index SET encoding = 'lzma' WHERE number = 1",
     wrongCatalogue +
         "column \"riegl.xyz\" of scan.rdbx, block 1: expected no encoding or \"pieces\", found the "
         "encoding \"lzma\")"},
    {"PiecesTooSmallForTheirRecords",
     "UPDATE block_index SET encoding = 'pieces', bytes = 0 WHERE attribute = 1 AND number = 1",
     wrongCatalogue + "column \"riegl.xyz\" of scan.rdbx, block 1: expected bytes that can hold 96 bytes of "
                      "records, found 0)"},
    {"PiecesLargerThanTheFile",
     "UPDATE block_index SET encoding = 'pieces', bytes = 1000000000 WHERE attribute = 1 AND number = 1",
     wrongCatalogue +
         "table \"block_index\" of scan.rdbx: expected blocks that fit into SIZE bytes, found larger "
         "ones)"},
    {"OtherEncoding", "UPDATE block_index SET encoding = 'pieces' WHERE attribute = 1 AND number = 1",
     otherChecksum + "*"},
    {"OtherChecksumInTheIndex", "UPDATE block_index SET checksum = 5 WHERE attribute = 1 AND number = 1",
     otherChecksum + "*"},
    {"IndexChecksumOf33Bits", "UPDATE block_index SET checksum = 4294967296 WHERE attribute = 1",
     wrongCatalogue + "table \"block_index\" of scan.rdbx: expected a checksum of 0 to 4294967295, found "
                      "4294967296)"},
    {"RowMissingInTheIndex", "DELETE FROM block_index WHERE attribute = 1 AND number = 1",
     wrongCatalogue + "column \"riegl.xyz\" of scan.rdbx: expected block 1 of 3, found block 2)"},
    {"LastRowMissingInTheIndex", "DELETE FROM block_index WHERE attribute = 2 AND number = 2",
     wrongCatalogue +
         "table \"block\" of scan.rdbx: expected the blocks of table \"block_index\", found block 2 of "
         "attribute 2 besides)"},
    {"RowOfNoAttributeInTheIndex", "INSERT INTO block_index VALUES (3, 0, NULL, 0, 0)",
     wrongCatalogue +
         "table \"block_index\" of scan.rdbx: expected blocks of the attributes in rising order, found "
         "one of attribute 3)"},
    {"BlockMissing", "DELETE FROM block WHERE attribute = 1 AND number = 1",
     wrongCatalogue +
         "table \"block\" of scan.rdbx: expected block 1 of column \"riegl.xyz\", found block 2 of "
         "attribute 1)"},
    {"LastBlockMissing", "DELETE FROM block WHERE attribute = 2 AND number = 2",
     wrongCatalogue +
         "table \"block\" of scan.rdbx: expected block 2 of column \"riegl.class\", found none)"},
    {"BlockWithoutChecksum", "UPDATE block SET checksum = NULL WHERE attribute = 2 AND number = 1",
     damaged +
         "column \"riegl.class\" of scan.rdbx, block 1: expected checksum 1624488069 as in the block index, "
         "found null)"},
    {"BlockWithOtherChecksum", "UPDATE block SET checksum = 17 WHERE attribute = 2 AND number = 1",
     damaged +
         "column \"riegl.class\" of scan.rdbx, block 1: expected checksum 1624488069 as in the block index, "
         "found 17)"},
    {"BlockOfOtherLength", "UPDATE block SET data = x'0405' WHERE attribute = 2 AND number = 1",
     damaged + "column \"riegl.class\" of scan.rdbx, block 1: expected 4 bytes, found 2)"},
    {"OtherData", "UPDATE block SET data = x'04050600' WHERE attribute = 2 AND number = 1",
     damaged +
         "column \"riegl.class\" of scan.rdbx, block 1: expected checksum 1624488069, found 4273417510)"},
    {"OtherMinimum", "UPDATE extent SET minimum = 1 WHERE attribute = 1 AND number = 0 AND component = 0",
     damaged + "extents of scan.rdbx: expected checksum 1626733199, found *)"},
    {"NoExtents", "DELETE FROM extent",
     damaged + "extents of scan.rdbx: expected checksum 1626733199, found 0)"},
    {"NoExtentChecksum", "UPDATE database SET extent_checksum = NULL",
     wrongCatalogue +
         "table \"database\" of scan.rdbx: expected a checksum of the extents of 0 to 4294967295, "
         "found null)"},
    {"ComponentMissing", "DELETE FROM extent WHERE attribute = 1 AND number = 0 AND component = 2",
     wrongCatalogue + "table \"extent\" of scan.rdbx: expected extents of 3 components, found 2)"},
    {"ComponentTooMany", "INSERT INTO extent VALUES (1, 0, 3, 0, 0, 0)",
     wrongCatalogue +
         "table \"extent\" of scan.rdbx: expected component 3 of 3, found component 3 of block 0 of "
         "attribute 1)"},
    {"ExtentOfNoBlock", "INSERT INTO extent VALUES (2, 3, 0, 0, 0, 0)",
     wrongCatalogue +
         "table \"extent\" of scan.rdbx: expected blocks of the attributes in rising order, found "
         "component 0 of block 3 of attribute 2)"},
    {"MoreMissingThanRecords", "UPDATE extent SET missing = 5 WHERE attribute = 2 AND number = 0",
     wrongCatalogue +
         "table \"extent\" of scan.rdbx: expected a range that fits the values that are missing, found "
         "component 0 of block 0 of attribute 2)"},
    {"MinimumAboveMaximum", "UPDATE extent SET minimum = 99 WHERE attribute = 2 AND number = 0",
     wrongCatalogue +
         "table \"extent\" of scan.rdbx: expected a range that fits the values that are missing, found "
         "component 0 of block 0 of attribute 2)"},
};

class Version2 : public testing::Test {
 protected:
  void SetUp() override { writeSample(path, WriterSettings{4}); }
  std::string errorOfReading() {
    return errorOf(directory, [this] {
      readColumn<double>(path, "riegl.xyz", 5);
      readColumn<unsigned char>(path, "riegl.class", 3);
      Database(path).item("riegl.time_base").value();
      Database(path).extents("riegl.xyz");
    });
  }
  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
};

class DamagedVersion2 : public Version2, public testing::WithParamInterface<Case> {};

TEST_P(DamagedVersion2, IsReportedInFull) {
  execute(path, GetParam().damage);
  std::string expected = GetParam().error;
  if (const std::size_t at = expected.find("SIZE"); at != std::string::npos) {
    expected.replace(at, 4, std::to_string(bytesOf(path).size()));
  }
  const std::string error = errorOfReading();
  if (const std::size_t any = expected.find('*'); any != std::string::npos) {
    EXPECT_THAT(error, testing::StartsWith(expected.substr(0, any)));
  } else {
    EXPECT_EQ(error, expected);
  }
}

INSTANTIATE_TEST_SUITE_P(Tables, DamagedVersion2, testing::ValuesIn(cases),
                         [](const auto& row) { return row.param.name; });

TEST_F(Version2, IsReadWithoutError) {
  EXPECT_EQ(errorOfReading(), "no error");
  EXPECT_EQ(Database(path).version(), 2);
}

TEST_F(Version2, HasTheChecksumsOfTheDocumentedExample) {
  Writer writer(path);
  writer.addAttribute({"riegl.xyz", ElementType::float64, 3, 1, 0, "m", "Koordinaten \u00d6sterreich"});
  writer.setMetadata("riegl.time_base", R"({"epoch": "2015-10-27T00:00:00+00:00"})");
  const std::vector<double> points{1, 2, 3, 4, 5, 6};
  writer.write(2, {points.data()});
  writer.finish();
  execute(
      path,
      "CREATE TEMP TABLE expect(holds INTEGER CHECK (holds));"
      "INSERT INTO expect SELECT catalogue_checksum = 2216246988 FROM database;"
      "INSERT INTO expect SELECT extent_checksum = 513255105 FROM database;"
      "INSERT INTO expect SELECT encoding IS NULL AND checksum = 1830403536 AND bytes = 48 FROM block_index;"
      "INSERT INTO expect SELECT count(*) = 3 AND min(minimum) = 1 AND max(maximum) = 6 FROM extent");
  EXPECT_EQ(Database(path).recordCount(), 2U);
}

TEST_F(Version2, StatesTheExtentsOfBlocksAndColumns) {
  const Database database(path);
  ASSERT_EQ(database.blockExtents("riegl.class").size(), 3U);
  EXPECT_THAT(database.blockExtents("riegl.class")[1], ElementsAre(container::ComponentExtent{4, 7, 0}));
  EXPECT_THAT(database.extents("riegl.xyz"),
              ElementsAre(container::ComponentExtent{0, 27, 0}, container::ComponentExtent{1, 28, 0},
                          container::ComponentExtent{2, 29, 0}));
}

TEST_F(Version2, LeavesMissingValuesOutOfExtents) {
  constexpr double none = std::numeric_limits<double>::quiet_NaN();
  writeColumn(path, {"a", ElementType::float64, 1, 2, 1}, std::vector<double>{none, none, 3, none, 5}, {2});
  const Database database(path);
  EXPECT_THAT(database.blockExtents("a")[0], ElementsAre(container::ComponentExtent{{}, {}, 2}));
  EXPECT_THAT(database.extents("a"), ElementsAre(container::ComponentExtent{7, 11, 3}));
}

TEST_F(Version2, HasNoExtentsOfManyComponents) {
  writeColumn(path, {"a", ElementType::uint8, 17}, std::vector<unsigned char>(17));
  EXPECT_TRUE(Database(path).extents("a").empty());
}

TEST_F(Version2, HasExtentsOnBothSidesOfAColumnWithout) {
  {
    Writer writer(path);
    for (const auto& [name, length] : {std::pair{"a", 1U}, {"b", 17U}, {"c", 2U}}) {
      writer.addAttribute({name, ElementType::uint8, length});
    }
    const std::vector<unsigned char> values(17, 5);
    writer.write(1, {values.data(), values.data(), values.data()});
    writer.finish();
  }
  EXPECT_EQ(Database(path).extents("a").size(), 1U);
  EXPECT_TRUE(Database(path).extents("b").empty());
  EXPECT_EQ(Database(path).extents("c").size(), 2U);
}

TEST_F(Version2, IsReadWithAnIndexOfAnotherOrder) {
  execute(path, "CREATE INDEX by_size ON block_index(checksum, bytes, encoding)");
  execute(path, "CREATE INDEX by_value ON extent(missing, maximum, minimum)");
  std::string found;
  container::verify(path, [&](const std::string&, const std::string& text) { found += text; });
  EXPECT_EQ(found, "");
}

TEST_F(Version2, VersionOneStatesNoExtents) {
  writeSample(path);
  EXPECT_TRUE(Database(path).extents("riegl.xyz").empty());
  EXPECT_EQ(Database(path).version(), 1);
}

TEST_F(Version2, VerifyReportsExtents) {
  execute(path, "UPDATE extent SET minimum = 0.5 WHERE attribute = 1 AND number = 0 AND component = 0");
  std::string found;
  const auto seen =
      container::verify(path, [&](const std::string&, const std::string& text) { found = text; });
  EXPECT_EQ(seen.findings, 1U);
  EXPECT_TRUE(seen.isCatalogueProtected);
  EXPECT_THAT(found, testing::HasSubstr("expected checksum 1626733199, found "));
}

TEST_F(Version2, HoldsMetadataOf32Mebibytes) {
  Writer writer(path);
  writer.setMetadata("a", std::string((32 << 20) - 1, 'x'));
  writer.finish();
  EXPECT_EQ(Database(path).item("a")->size(), (32U << 20) - 1);
}

} // namespace
