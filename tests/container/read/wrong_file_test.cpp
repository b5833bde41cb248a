// SPDX-License-Identifier: BSD-3-Clause
// Every kind of file that is not a sound database, with the error text that a user reads.
#include "tests/container/database_file.h"
#include "tests/support/grouping_locale.h"

#include <algorithm>
#include <ostream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace containertest;

struct Case {
  std::string name;
  std::string damage; ///< SQL run on the sample
  std::string error;  ///< of opening and reading it
};

void PrintTo(const Case& row, std::ostream* out) {
  *out << row.damage;
}

const Case cases[] = {
    {"OtherApplication", "PRAGMA application_id = 7",
     "the file is not a database of this kind (scan.rdbx: expected application id 0x52444243, found "
     "0x00000007)"},
    {"NewerVersion", "PRAGMA user_version = 3",
     "the file is not a database of this kind (scan.rdbx: expected format version 1 or 2, found version 3; a "
     "newer program is needed to read it)"},
    {"VersionZero", "PRAGMA user_version = 0",
     "the file is not a database of this kind (scan.rdbx: expected format version 1 or 2, found version 0)"},
    {"VersionTwoWithoutItsColumns", "PRAGMA user_version = 2",
     "the file is not a database of this kind (table \"database\" of scan.rdbx: expected a column "
     "\"catalogue_checksum\", found none)"},
    {"NoTableDatabase", "DROP TABLE database",
     "the file is not a database of this kind (table \"database\" of scan.rdbx: expected a table, found "
     "none)"},
    {"NoTableBlock", "DROP TABLE block",
     "the file is not a database of this kind (table \"block\" of scan.rdbx: expected a table, found none)"},
    {"NoTableMetadata", "DROP TABLE metadata",
     "the file is not a database of this kind (table \"metadata\" of scan.rdbx: expected a table, found "
     "none)"},
    {"ViewForATable", "DROP TABLE database; CREATE VIEW database AS SELECT 10 AS records, 4 AS block_rows",
     "the file is not a database of this kind (table \"database\" of scan.rdbx: expected a table, found a "
     "view)"},
    {"VirtualTableForATable", "DROP TABLE metadata; CREATE VIRTUAL TABLE metadata USING fts5(name, value)",
     "the file is not a database of this kind (table \"metadata\" of scan.rdbx: expected a table, found a "
     "virtual table)"},
    {"NoColumnScale", "ALTER TABLE attribute DROP COLUMN scale",
     "the file is not a database of this kind (table \"attribute\" of scan.rdbx: expected a column "
     "\"scale\", found none)"},
    {"NoColumnChecksum", "ALTER TABLE block DROP COLUMN checksum",
     "the file is not a database of this kind (table \"block\" of scan.rdbx: expected a column \"checksum\", "
     "found none)"},
    {"NoDatabaseRow", "DELETE FROM database",
     "the catalogue of the database is wrong (table \"database\" of scan.rdbx: expected one row, found "
     "none)"},
    {"TwoDatabaseRows", "INSERT INTO database VALUES (10, 4)",
     "the catalogue of the database is wrong (table \"database\" of scan.rdbx: expected one row, found "
     "more)"},
    {"NegativeRecords", "UPDATE database SET records = -1",
     "the catalogue of the database is wrong (table \"database\" of scan.rdbx: expected a count of records "
     "of at least 0, found -1)"},
    {"HugeRecords", "UPDATE database SET records = 9223372036854775807",
     "the catalogue of the database is wrong (table \"database\" of scan.rdbx: expected at most FIT records "
     "of 25 bytes in a file of SIZE bytes, found 9223372036854775807 records)"},
    {"RecordsAsText", "UPDATE database SET records = 'many'",
     "the catalogue of the database is wrong (table \"database\" of scan.rdbx: expected a count of records "
     "of at least 0, found the text \"many\")"},
    {"ZeroRecordsWithBlocks", "UPDATE database SET records = 0",
     "the catalogue of the database is wrong (column \"riegl.xyz\" of scan.rdbx: expected 0 blocks, found "
     "block 0 besides)"},
    {"FewerRecords", "UPDATE database SET records = 9",
     "the database is damaged (column \"riegl.xyz\" of scan.rdbx, block 2: expected 24 bytes, found 48)"},
    {"MoreRecords", "UPDATE database SET records = 11",
     "the database is damaged (column \"riegl.xyz\" of scan.rdbx, block 2: expected 72 bytes, found 48)"},
    {"ManyMoreRecords", "UPDATE database SET records = 100",
     "the catalogue of the database is wrong (column \"riegl.xyz\" of scan.rdbx: expected 25 blocks, found "
     "3)"},
    {"NegativeBlockRows", "UPDATE database SET block_rows = -4",
     "the catalogue of the database is wrong (table \"database\" of scan.rdbx: expected records per block of "
     "1 "
     "to 4294967295, found -4)"},
    {"ZeroBlockRows", "UPDATE database SET block_rows = 0",
     "the catalogue of the database is wrong (table \"database\" of scan.rdbx: expected records per block of "
     "1 "
     "to 4294967295, found 0)"},
    {"HugeBlockRows", "UPDATE database SET block_rows = 9223372036854775807",
     "the catalogue of the database is wrong (table \"database\" of scan.rdbx: expected records per block of "
     "1 "
     "to 4294967295, found 9223372036854775807)"},
    {"LargerBlockRows", "UPDATE database SET block_rows = 5",
     "the catalogue of the database is wrong (column \"riegl.xyz\" of scan.rdbx: expected 2 blocks, found "
     "block 2 besides)"},
    {"UnknownType", "UPDATE attribute SET type = 'int128' WHERE id = 2",
     "the catalogue of the database is wrong (column \"riegl.class\" of scan.rdbx: expected a type of int8 "
     "to uint64, float32 or float64, found \"int128\")"},
    {"OtherType", "UPDATE attribute SET type = 'uint16' WHERE id = 2",
     "the database is damaged (column \"riegl.class\" of scan.rdbx, block 0: expected 8 bytes, found 4)"},
    {"TypeAsBlob", "UPDATE attribute SET type = x'00' WHERE id = 2",
     "the catalogue of the database is wrong (column \"riegl.class\" of scan.rdbx: expected a text as type, "
     "found a blob)"},
    {"NameAsBlob", "UPDATE attribute SET name = x'00' WHERE id = 2",
     "the catalogue of the database is wrong (attribute 2 of scan.rdbx: expected a text as name, found a "
     "blob)"},
    {"ZeroLength", "UPDATE attribute SET length = 0 WHERE id = 2",
     "the catalogue of the database is wrong (column \"riegl.class\" of scan.rdbx: expected a length of 1 to "
     "65536, found 0)"},
    {"HugeLength", "UPDATE attribute SET length = 4294967297 WHERE id = 2",
     "the catalogue of the database is wrong (column \"riegl.class\" of scan.rdbx: expected a length of 1 to "
     "65536, found 4294967297)"},
    {"ZeroScale", "UPDATE attribute SET scale = 0 WHERE id = 1",
     "the catalogue of the database is wrong (column \"riegl.xyz\" of scan.rdbx: expected a scale other than "
     "0, found 0)"},
    {"InfiniteScale", "UPDATE attribute SET scale = 9e999 WHERE id = 1",
     "the catalogue of the database is wrong (column \"riegl.xyz\" of scan.rdbx: expected a finite scale, "
     "found Inf)"},
    {"OffsetAsText", "UPDATE attribute SET \"offset\" = 'low' WHERE id = 1",
     "the catalogue of the database is wrong (column \"riegl.xyz\" of scan.rdbx: expected a finite offset, "
     "found the text \"low\")"},
    {"UnitAsBlob", "UPDATE attribute SET unit = x'00' WHERE id = 1",
     "the catalogue of the database is wrong (column \"riegl.xyz\" of scan.rdbx: expected a text as unit, "
     "found a blob)"},
    {"MissingBlock", "DELETE FROM block WHERE attribute = 1 AND number = 1",
     "the catalogue of the database is wrong (column \"riegl.xyz\" of scan.rdbx: expected block 1 of 3, "
     "found block 2)"},
    {"MissingLastBlock", "DELETE FROM block WHERE attribute = 1 AND number = 2",
     "the catalogue of the database is wrong (column \"riegl.xyz\" of scan.rdbx: expected 3 blocks, found "
     "2)"},
    {"ShortBlock", "UPDATE block SET data = zeroblob(72) WHERE attribute = 1 AND number = 1",
     "the database is damaged (column \"riegl.xyz\" of scan.rdbx, block 1: expected 96 bytes, found 72)"},
    {"LongBlock", "UPDATE block SET data = zeroblob(97) WHERE attribute = 1 AND number = 1",
     "the database is damaged (column \"riegl.xyz\" of scan.rdbx, block 1: expected 96 bytes, found 97)"},
    {"BlockAsText", "UPDATE block SET data = 'abcd' WHERE attribute = 2 AND number = 1",
     "the database is damaged (column \"riegl.class\" of scan.rdbx, block 1: expected a blob, found a value "
     "of type text)"},
    {"BlockAsNumber", "UPDATE block SET data = 1234 WHERE attribute = 2 AND number = 1",
     "the database is damaged (column \"riegl.class\" of scan.rdbx, block 1: expected a blob, found a value "
     "of type integer)"},
    {"WrongChecksum", "UPDATE block SET checksum = 17 WHERE attribute = 2 AND number = 1",
     "the database is damaged (column \"riegl.class\" of scan.rdbx, block 1: expected checksum 17, found "
     "1624488069)"},
    {"WrongData", "UPDATE block SET data = x'04050600' WHERE attribute = 2 AND number = 1",
     "the database is damaged (column \"riegl.class\" of scan.rdbx, block 1: expected checksum 1624488069, "
     "found 4273417510)"},
    {"ChecksumOutOfRange", "UPDATE block SET checksum = -1 WHERE attribute = 2 AND number = 1",
     "the database is damaged (column \"riegl.class\" of scan.rdbx, block 1: expected a checksum of 32 bits, "
     "found -1)"},
    {"ChecksumAsText", "UPDATE block SET checksum = 'x' WHERE attribute = 2 AND number = 1",
     "the database is damaged (column \"riegl.class\" of scan.rdbx, block 1: expected an integer as "
     "checksum, found a text)"},
    {"NoAttributes", "DELETE FROM attribute",
     "the catalogue of the database is wrong (table \"database\" of scan.rdbx: expected no records without "
     "attributes, found 10 records)"},
    {"ItemAsBlob", "UPDATE metadata SET value = x'00'",
     "the database is damaged (item \"riegl.time_base\" of scan.rdbx: expected a text, found a blob)"},
    {"SameIdTwice",
     "CREATE TABLE copy (id INTEGER, name TEXT, type TEXT, length INTEGER, scale REAL, \"offset\" REAL, unit "
     "TEXT, title TEXT, description TEXT); INSERT INTO copy SELECT * FROM attribute; UPDATE copy SET id = 1; "
     "DROP TABLE attribute; ALTER TABLE copy RENAME TO attribute",
     "the catalogue of the database is wrong (table \"attribute\" of scan.rdbx: expected ids that rise from "
     "row to row, found 1)"},
    {"ChecksumOf33Bits", "UPDATE block SET checksum = 4294967296 WHERE attribute = 2 AND number = 1",
     "the database is damaged (column \"riegl.class\" of scan.rdbx, block 1: expected a checksum of 32 bits, "
     "found 4294967296)"},
    {"BlockNumberAsText", "UPDATE block SET number = 'two' WHERE attribute = 2 AND number = 2",
     "the catalogue of the database is wrong (column \"riegl.class\" of scan.rdbx: expected 3 blocks, found "
     "2)"},
    {"GeneratedNumbers",
     "ALTER TABLE database ADD COLUMN more INTEGER AS (length(hex(zeroblob(records * 100000))))",
     "the file is not a database of this kind (table \"database\" of scan.rdbx: expected stored values, "
     "found a rule that makes them in column \"more\")"},
    {"GeneratedText",
     "ALTER TABLE attribute DROP COLUMN title; ALTER TABLE attribute ADD COLUMN title TEXT AS "
     "(printf('%.*c', 900000, 'x'))",
     "the file is not a database of this kind (table \"attribute\" of scan.rdbx: expected stored values, "
     "found a rule that makes them in column \"title\")"},
    {"LongDefault",
     "ALTER TABLE attribute DROP COLUMN title; ALTER TABLE attribute ADD COLUMN title TEXT DEFAULT "
     "'0123456789abcdef0123456789abcdef'",
     "the file is not a database of this kind (table \"attribute\" of scan.rdbx: expected stored values, "
     "found a rule that makes them in column \"title\")"},
    {"ViewUnderATablesEntry",
     "PRAGMA writable_schema = ON; UPDATE sqlite_schema SET sql = 'CREATE VIEW database AS WITH RECURSIVE r "
     "AS (SELECT 1 AS records UNION ALL SELECT records FROM r) SELECT records, 4 AS block_rows FROM r' WHERE "
     "name = 'database'",
     "cannot read the database (scan.rdbx: expected sound content, found: database disk image is malformed)"},
    {"VirtualTableUnderATablesEntry",
     "PRAGMA writable_schema = ON; UPDATE sqlite_schema SET sql = 'CREATE VIRTUAL TABLE database USING "
     "fts5(records, block_rows)' WHERE name = 'database'",
     "the file is not a database of this kind (table \"database\" of scan.rdbx: expected a column "
     "\"records\", found none)"},
    {"BlockTableWithoutRowIds",
     "DROP TABLE block; CREATE TABLE block (attribute INTEGER, number INTEGER, checksum INTEGER, data BLOB, "
     "PRIMARY KEY (attribute, number)) WITHOUT ROWID",
     "cannot read the database (table \"block\" of scan.rdbx: expected sound content, found: SQL logic "
     "error)"},
};

void readAll(const std::string& path) {
  readColumn<double>(path, "riegl.xyz", 5);
  readColumn<unsigned char>(path, "riegl.class", 3);
  Database(path).item("riegl.time_base").value();
}

class WrongFile : public testing::Test {
 protected:
  std::string errorOfReading() {
    return errorOf(directory, [this] { readAll(path); });
  }
  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
};

class DamagedSample : public WrongFile, public testing::WithParamInterface<Case> {};

TEST_P(DamagedSample, IsReportedInFull) {
  writeSample(path);
  execute(path, GetParam().damage);
  std::string expected = GetParam().error;
  const std::size_t bytes = bytesOf(path).size();
  for (const auto& [mark, number] : {std::pair("FIT", bytes / 25), std::pair("SIZE", bytes)}) {
    if (const std::size_t at = expected.find(mark); at != std::string::npos) {
      expected.replace(at, std::string(mark).size(), std::to_string(number));
    }
  }
  EXPECT_EQ(errorOfReading(), expected);
}

INSTANTIATE_TEST_SUITE_P(Tables, DamagedSample, testing::ValuesIn(cases),
                         [](const auto& row) { return row.param.name; });

TEST_F(WrongFile, MissingFileIsReported) {
  EXPECT_EQ(errorOfReading(),
            "cannot open the database (scan.rdbx: expected a readable file, found: No such file "
            "or directory)");
}

TEST_F(WrongFile, DirectoryIsReported) {
  mkdir(path.c_str(), 0700);
  EXPECT_EQ(errorOfReading(),
            "cannot open the database (scan.rdbx: expected a regular file, found a directory)");
}

TEST_F(WrongFile, NamedPipeIsReportedWithoutWaiting) {
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  EXPECT_EQ(errorOfReading(),
            "cannot open the database (scan.rdbx: expected a regular file, found a named pipe)");
}

TEST_F(WrongFile, DeviceIsReported) {
  EXPECT_EQ(errorOf(directory, [] { Database("/dev/null"); }),
            "cannot open the database (/dev/null: expected a regular file, found a device)");
}

TEST_F(WrongFile, UnreadableFileIsReported) {
  writeSample(path);
  chmod(directory.root().c_str(), 0755);
  chmod(path.c_str(), 0);
  const bool privileged = geteuid() == 0;
  ASSERT_TRUE(!privileged || seteuid(65534) == 0);
  const std::string error = errorOfReading();
  ASSERT_TRUE(!privileged || seteuid(0) == 0);
  EXPECT_EQ(error,
            "cannot open the database (scan.rdbx: expected a readable file, found: Permission denied)");
}

TEST_F(WrongFile, EmptyFileIsReported) {
  writeBytes(path, {});
  EXPECT_EQ(
      errorOfReading(),
      "the file is not a database of this kind (scan.rdbx: expected an SQLite file, found an empty file)");
}

TEST_F(WrongFile, OtherContentIsReported) {
  const std::string other =
      "the file is not a database of this kind (scan.rdbx: expected an SQLite file, found other content)";
  writeBytes(path, {'x'});
  EXPECT_EQ(errorOfReading(), other);
  writeBytes(path, std::vector<char>(100'000, 'x'));
  EXPECT_EQ(errorOfReading(), other);
}

TEST_F(WrongFile, TruncatedFileIsReported) {
  writeSample(path);
  std::vector<char> bytes = bytesOf(path);
  bytes.pop_back();
  writeBytes(path, bytes);
  EXPECT_EQ(errorOfReading(), "the database is damaged (scan.rdbx: expected at least " +
                                  std::to_string(bytes.size() + 1) + " bytes, found " +
                                  std::to_string(bytes.size()) + ")");
}

TEST_F(WrongFile, SizeThatOverflowsIsNotTakenForMemoryThatRanOut) {
  writeSample(path);
  std::vector<char> bytes = bytesOf(path);
  // A row of 2^32 - 1 bytes, its first column a text of 60000: the pages that it goes on to are counted as none.
  const std::string row = "\x8f\xff\xff\xff\x7f\x01\x08\x87\xa9\x4d\x01\x01\x01\x01";
  constexpr unsigned char place = 200; // between the offsets of the cells and the cells
  bytes[108] = 0;
  bytes[109] = static_cast<char>(place);
  std::copy(row.begin(), row.end(), bytes.begin() + place);
  writeBytes(path, bytes);
  EXPECT_EQ(errorOfReading(),
            "cannot read the database (scan.rdbx: expected sound content, found a size that "
            "the file cannot hold)");
}

TEST_F(WrongFile, EmptyPathIsReported) {
  EXPECT_EQ(errorOf(directory, [] { Database(""); }),
            "cannot open the database (expected the path of a file, found no text)");
}

TEST_F(WrongFile, PathWithAZeroByteIsReported) {
  EXPECT_EQ(errorOf(directory, [] { Database(std::string("a\0b", 3)); }),
            "cannot open the database (expected the path of a file, found a zero byte in it)");
}

TEST_F(WrongFile, IsReportedTheSameInALocaleThatGroupsDigits) {
  writeSample(path);
  execute(path, "PRAGMA application_id = 7");
  const support::GroupingLocale grouping;
  EXPECT_EQ(errorOfReading(), "the file is not a database of this kind (scan.rdbx: expected application id "
                              "0x52444243, found 0x00000007)");
}

} // namespace
