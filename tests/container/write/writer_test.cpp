// SPDX-License-Identifier: BSD-3-Clause
// The writer: the files it leaves when it finishes, fails or is destroyed early, and what verify finds in them.
#include "container/read/verify.h"
#include "tests/container/database_file.h"
#include "tests/support/resource_limit.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace {

using namespace containertest;
using testing::ElementsAre;

class Writing : public testing::Test {
 protected:
  std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory.root())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }
  std::string errorOfSpec(const Attribute& spec) {
    return errorOf(directory, [&] { Writer(path).addAttribute(spec); });
  }
  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
};

TEST_F(Writing, LeavesOneFileWhenFinished) {
  writeSample(path);
  EXPECT_THAT(files(), ElementsAre("scan.rdbx"));
  EXPECT_EQ(Database(path).recordCount(), 10U);
}

TEST_F(Writing, LeavesNothingWithoutFinish) {
  {
    Writer writer(path);
    writer.addAttribute({"a", ElementType::uint8});
    EXPECT_EQ(files().size(), 1U);
  }
  EXPECT_THAT(files(), testing::IsEmpty());
}

TEST_F(Writing, LeavesTheOldFileWithoutFinish) {
  writeBytes(path, {'o', 'l', 'd'});
  { Writer writer(path); }
  EXPECT_THAT(bytesOf(path), ElementsAre('o', 'l', 'd'));
  EXPECT_THAT(files(), ElementsAre("scan.rdbx"));
}

TEST_F(Writing, ReplacesTheOldFileAtTheEnd) {
  writeBytes(path, {'o', 'l', 'd'});
  writeSample(path);
  EXPECT_EQ(Database(path).recordCount(), 10U);
}

// SQLite would apply the log of the old file to the new one.
TEST_F(Writing, RefusesAPlaceWithTheLogOfAnOlderFile) {
  for (const char* const suffix : {"-wal", "-journal"}) {
    writeBytes(path + suffix, {'l', 'o', 'g'});
    EXPECT_EQ(errorOf(directory, [this] { Writer writer(path); }),
              std::string(
                  "cannot write the database (scan.rdbx: expected no log of an unfinished change beside it, "
                  "found: scan.rdbx") +
                  suffix + "; open the older file with a program that may write to it, or remove the log)");
    std::filesystem::remove(path + suffix);
  }
}

TEST_F(Writing, RefusesTheNameWhenALogOfAnOlderFileHasAppeared) {
  writeBytes(path, {'o', 'l', 'd'});
  Writer writer(path);
  writer.addAttribute({"a", ElementType::uint8});
  writeBytes(path + "-wal", {'l', 'o', 'g'});
  EXPECT_THAT(errorOf(directory, [&] { writer.finish(); }), testing::HasSubstr("found: scan.rdbx-wal; "));
  EXPECT_THAT(bytesOf(path), ElementsAre('o', 'l', 'd'));
}

TEST_F(Writing, AcceptsAnEmptyLogOfAnOlderFile) {
  writeBytes(path + "-wal", {});
  writeSample(path);
  EXPECT_EQ(Database(path).recordCount(), 10U);
}

TEST_F(Writing, FollowsASymbolicLink) {
  std::filesystem::create_directory(directory.path("store"));
  std::filesystem::create_symlink("store/real.rdbx", path);
  writeSample(path);
  EXPECT_TRUE(std::filesystem::is_symlink(path));
  EXPECT_EQ(Database(directory.path("store/real.rdbx")).recordCount(), 10U);
}

TEST_F(Writing, RefusesADirectoryThatIsNotThere) {
  EXPECT_EQ(
      errorOf(directory, [&] { Writer(directory.path("none/scan.rdbx")); }),
      "cannot write the database (none/scan.rdbx: expected a directory that takes a new file, found: No such "
      "file or directory)");
}

TEST_F(Writing, RefusesADirectoryAsFile) {
  EXPECT_EQ(errorOf(directory, [&] { Writer(directory.root().string() + "/."); }),
            "cannot write the database (.: expected a new or a regular file, found: a directory)");
}

TEST_F(Writing, PassesOnThePermissionsOfTheOldFile) {
  writeBytes(path, {'o', 'l', 'd'});
  std::filesystem::permissions(path, std::filesystem::perms(0640));
  writeSample(path);
  EXPECT_EQ(Database(path).recordCount(), 10U);
  EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
}

TEST_F(Writing, TakesTheLongestNameOfAFileSystem) {
  const std::string longest = directory.path(std::string(255, 'n'));
  writeSample(longest);
  EXPECT_EQ(Database(longest).recordCount(), 10U);
}

TEST_F(Writing, RefusesAPipe) {
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  EXPECT_EQ(errorOf(directory, [&] { Writer{path}; }),
            "cannot write the database (scan.rdbx: expected a new or a regular file, found: a pipe)");
}

TEST_F(Writing, RefusesAPathThatNamesNoFile) {
  const std::string what = "cannot write the database (";
  EXPECT_EQ(errorOf(directory, [] { Writer(""); }),
            what + "\"\": expected the path of a file, found: an empty text)");
  const std::string refusal = what + std::string(path, directory.root().string().size() + 1);
  EXPECT_EQ(errorOf(directory, [&] { Writer(path + std::string("\0b", 2)); }),
            refusal + ": expected the path of a file, found: a zero byte in it)");
  std::filesystem::create_symlink("scan.rdbx", path);
  EXPECT_EQ(errorOf(directory, [&] { Writer{path}; }),
            refusal + ": expected a path that can be followed, found: Too many levels of symbolic links)");
}

TEST_F(Writing, RefusesSpecsThatCannotBeRead) {
  const std::string what = "the database cannot be written so (column \"a\": expected ";
  EXPECT_EQ(errorOfSpec({""}),
            "the database cannot be written so (column \"\": expected a name, found none)");
  EXPECT_EQ(errorOfSpec({"a", ElementType::int8, 0}), what + "a length of 1 to 65536, found 0)");
  EXPECT_EQ(errorOfSpec({"a", ElementType::int8, 65537}), what + "a length of 1 to 65536, found 65537)");
  EXPECT_EQ(errorOfSpec({"a", ElementType::int8, 1, 0}),
            what + "a finite scale other than 0, found 0.000000)");
  EXPECT_EQ(errorOfSpec({"a", ElementType::int8, 1, 1, 1.0 / 0.0}), what + "a finite offset, found inf)");
  EXPECT_EQ(errorOfSpec({"a", ElementType::float64, 1000}),
            what + "blocks of at most 900000000 bytes, found 8000000000)");
}

TEST_F(Writing, RefusesWrongUse) {
  Writer writer(path);
  writer.addAttribute({"a", ElementType::uint8});
  const unsigned char value = 1;
  EXPECT_THROW(writer.addAttribute({"a", ElementType::uint8}), Error);
  EXPECT_THROW(writer.write(1, {}), Error);
  EXPECT_THROW(writer.write(1, {nullptr}), Error);
  writer.write(1, {&value});
  EXPECT_THROW(writer.addAttribute({"b", ElementType::uint8}), Error);
  writer.finish();
  EXPECT_THROW(writer.finish(), Error);
  EXPECT_THROW(writer.write(1, {&value}), Error);
}

TEST_F(Writing, RefusesRecordsWithoutAttributes) {
  EXPECT_THROW(Writer(path).write(1, {}), Error);
}

TEST_F(Writing, PartsOfAnySizeMakeTheSameFile) {
  std::vector<unsigned char> values(1000);
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = static_cast<unsigned char>(i * 13);
  }
  for (const std::uint64_t part : {1U, 7U, 64U, 65U, 200U, 1000U}) {
    Writer writer(path, {64, true});
    writer.addAttribute({"a", ElementType::uint8});
    for (std::uint64_t done = 0; done < 1000; done += part) {
      writer.write(std::min<std::uint64_t>(part, 1000 - done), {values.data() + done});
    }
    EXPECT_EQ(writer.rows(), 1000U);
    writer.finish();
    EXPECT_EQ(readColumn<unsigned char>(path, "a", 999), values) << "parts of " << part;
  }
}

TEST_F(Writing, FullDiskIsReportedAndLeavesNothing) {
  const auto handler = signal(SIGXFSZ, SIG_IGN);
  const support::ResourceLimit limit(RLIMIT_FSIZE, 1'000'000);
  const std::string error = errorOf(directory, [&] {
    writeColumn(path, {"a", ElementType::uint8}, std::vector<unsigned char>(40'000'000));
  });
  signal(SIGXFSZ, handler);
  EXPECT_THAT(error, testing::StartsWith(
                         "cannot write the database (scan.rdbx: expected room for its content, found: "));
  EXPECT_THAT(files(), testing::IsEmpty());
}

TEST_F(Writing, MakesTheDocumentedLayout) {
  writeSample(path);
  execute(
      path,
      "CREATE TEMP TABLE expect(holds INTEGER CHECK (holds));"
      "INSERT INTO expect SELECT application_id = 0x52444243 FROM pragma_application_id;"
      "INSERT INTO expect SELECT user_version = 1 FROM pragma_user_version;"
      "INSERT INTO expect SELECT page_size = 65536 FROM pragma_page_size;"
      "INSERT INTO expect SELECT records = 10 AND block_rows = 4 FROM database;"
      "INSERT INTO expect SELECT count(*) = 6 AND min(number) = 0 AND max(number) = 2 FROM block;"
      "INSERT INTO expect SELECT type = 'float64' AND length = 3 AND unit = 'm' FROM attribute WHERE id = 1;"
      "INSERT INTO expect SELECT data = x'04050607' AND checksum = 1624488069 FROM block"
      " WHERE attribute = 2 AND number = 1;"
      "INSERT INTO expect SELECT value = '{}' FROM metadata WHERE name = 'riegl.time_base'");
}

TEST_F(Writing, MakesTheDocumentedTables) {
  writeSample(path);
  // The tables of docs/database-format.md, which other programs follow; white space aside.
  execute(path, "CREATE TEMP TABLE expect(holds INTEGER CHECK (holds));"
                "INSERT INTO expect SELECT group_concat(replace(replace(sql, ' ', ''), char(10), ''), ';') = "
                "'CREATETABLEdatabase(recordsINTEGERNOTNULL,block_rowsINTEGERNOTNULL);"
                "CREATETABLEattribute(idINTEGERPRIMARYKEY,nameTEXTNOTNULLUNIQUE,typeTEXTNOTNULL,"
                "lengthINTEGERNOTNULLDEFAULT1,scaleREALNOTNULLDEFAULT1,offsetREALNOTNULLDEFAULT0,"
                "unitTEXT,titleTEXT,descriptionTEXT);"
                "CREATETABLEblock(attributeINTEGERNOTNULLREFERENCESattribute(id),numberINTEGERNOTNULL,"
                "checksumINTEGER,dataBLOBNOTNULL,PRIMARYKEY(attribute,number));"
                "CREATETABLEmetadata(nameTEXTPRIMARYKEY,valueTEXTNOTNULL)'"
                " FROM sqlite_schema WHERE type = 'table'");
}

/// CRC-32 bit by bit, from its definition.
std::uint32_t slowChecksum(const unsigned char* data, std::size_t bytes) {
  std::uint32_t state = 0xffffffff;
  for (std::size_t i = 0; i < bytes; ++i) {
    state ^= data[i];
    for (int bit = 0; bit < 8; ++bit) {
      state = (state >> 1) ^ ((state & 1) != 0 ? 0xedb88320U : 0U);
    }
  }
  return ~state;
}

TEST_F(Writing, ChecksumsAreThoseOfTheDefinitionAtEveryBlockSize) {
  std::vector<unsigned char> values(600'000);
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = static_cast<unsigned char>((i * i + i / 7) >> 3);
  }
  for (const std::uint32_t rows :
       {1U, 15U, 16U, 17U, 255U, 256U, 257U, 511U, 512U, 513U, 1000U, 1279U, 4096U, 600000U}) {
    const std::vector<unsigned char> part(values.begin(), values.begin() + rows);
    writeColumn(path, {"a", ElementType::uint8}, part, {rows, true});
    execute(path, "CREATE TEMP TABLE expect(holds INTEGER CHECK (holds));"
                  "INSERT INTO expect SELECT checksum = " +
                      std::to_string(slowChecksum(part.data(), part.size())) + " FROM block");
    EXPECT_EQ(readColumn<unsigned char>(path, "a", 999), part) << rows << " bytes";
  }
}

TEST_F(Writing, OmitsChecksumsWhenAsked) {
  writeSample(path, false);
  const auto seen = container::verify(path, [](const auto&, const auto&) {});
  EXPECT_EQ(seen.withoutChecksum, 6U);
  EXPECT_EQ(readColumn<unsigned char>(path, "riegl.class").size(), 10U);
}

TEST_F(Writing, VerifyFindsEveryFault) {
  writeSample(path);
  execute(path, "UPDATE block SET checksum = 17 WHERE attribute = 1 AND number = 1;"
                "UPDATE block SET data = x'00' WHERE attribute = 2 AND number = 1;"
                "UPDATE metadata SET value = x'00'");
  std::vector<std::string> found;
  const auto seen = container::verify(path, [&](const auto&, const auto& details) {
    found.push_back(details.substr(0, details.find(" of ")));
  });
  EXPECT_THAT(found,
              ElementsAre("column \"riegl.xyz\"", "column \"riegl.class\"", "item \"riegl.time_base\""));
  EXPECT_EQ(seen.findings, 3U);
  EXPECT_EQ(seen.blocks, 6U);
}

TEST_F(Writing, VerifyOfASoundFileFindsNothing) {
  writeSample(path);
  const auto seen = container::verify(path, [](const auto&, const auto& details) { FAIL() << details; });
  EXPECT_EQ(seen.bytes, 250U);
  EXPECT_EQ(seen.findings, 0U);
}

} // namespace
