// SPDX-License-Identifier: BSD-3-Clause
// The Python examples read what the container writes, and the container reads what they write.
#include "container/format/catalogue_text.h"
#include "container/read/verify.h"
#include "tests/container/database_file.h"
#include "tests/examples/encoded_database.h"
#include "tests/examples/rare_values.h"
#include "tests/support/file_content.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <ostream>
#include <random>
#include <sstream>

namespace {

using namespace containertest;
using container::BlockEncoding;

/// Runs a script of the examples. \param arguments  shell text \return  its exit status
int runExample(const std::string& script, const std::string& arguments) {
  const std::string command = "\"" PYTHON_PROGRAM "\" -B \"" EXAMPLES "/" + script + "\" " + arguments;
  return std::system(command.c_str());
}

/// Attributes, metadata and extents of a database, with every bit of their numbers.
std::string catalogueOf(const Database& database) {
  std::string text;
  for (std::size_t i = 0; i < database.attributeCount(); ++i) {
    const Attribute& found = database.attribute(i);
    appendLine(container::AttributeRow{static_cast<std::int64_t>(i), found.name, name(found.type),
                                       found.length, found.scale, found.offset, found.unit, found.title,
                                       found.description},
               text);
    for (const auto& block : database.blockExtents(found.name)) {
      for (const auto& [minimum, maximum, missing] : block) {
        appendLine(container::ExtentRow{0, 0, 0, minimum, maximum, static_cast<std::int64_t>(missing)}, text);
      }
    }
  }
  for (const std::string& name : database.itemNames()) {
    appendLine(container::MetadataRow{name, database.item(name).value()}, text);
  }
  return text;
}

/// All stored values of an attribute, as the bytes of the file.
std::string storedBytes(const Database& database, const Attribute& attribute) {
  std::string bytes(database.recordCount() * attribute.recordBytes(), '\0');
  Cursor cursor(database);
  cursor.bindStored(attribute.name, bytes.data());
  EXPECT_EQ(cursor.next(database.recordCount()), database.recordCount());
  return bytes;
}

/// Writes the content of a database to another one.
void copyDatabase(const std::string& from, const std::string& to, const WriterSettings& settings) {
  const Database source(from);
  Writer writer(to, settings);
  std::vector<std::string> columns;
  std::vector<const void*> values;
  for (std::size_t i = 0; i < source.attributeCount(); ++i) {
    writer.addAttribute(source.attribute(i));
    columns.push_back(storedBytes(source, source.attribute(i)));
  }
  for (const std::string& column : columns) {
    values.push_back(column.data());
  }
  for (const std::string& name : source.itemNames()) {
    writer.setMetadata(name, source.item(name).value());
  }
  writer.write(source.recordCount(), values);
  writer.finish();
}

void expectSameContent(const std::string& foundPath, const std::string& expectedPath) {
  const Database found(foundPath);
  const Database expected(expectedPath);
  ASSERT_EQ(catalogueOf(found), catalogueOf(expected));
  for (std::size_t i = 0; i < expected.attributeCount(); ++i) {
    const Attribute& attribute = expected.attribute(i);
    EXPECT_TRUE(storedBytes(found, attribute) == storedBytes(expected, attribute)) << attribute.name;
  }
}

void expectNoFindings(const std::string& path) {
  const auto refuse = [](const std::string& what, const std::string& details) { FAIL() << what << details; };
  EXPECT_TRUE(container::verify(path, refuse).isCatalogueProtected);
}

/// Columns as surveys have them: a grid of millimetres, steps, noise, counters, classes, gaps.
void writeSurvey(const std::string& path, const WriterSettings& settings) {
  constexpr std::size_t records = 3000;
  std::mt19937_64 random(5);
  std::vector<double> points;
  std::vector<float> heights;
  std::vector<std::uint16_t> noise;
  std::vector<std::int64_t> counters;
  std::vector<std::uint8_t> classes;
  std::vector<float> gaps;
  for (std::size_t i = 0; i < records; ++i) {
    for (const double origin : {454000.0, 5399000.0, 300.0}) {
      points.push_back(static_cast<double>(i * 17 + random() % 500) * 0.001 + origin);
    }
    heights.push_back(static_cast<float>(i / 7) * 0.25F);
    noise.push_back(static_cast<std::uint16_t>(random()));
    counters.push_back(static_cast<std::int64_t>(i) * 1000003 - 4000000000000000000);
    classes.push_back(static_cast<std::uint8_t>(i / 400));
    gaps.push_back(i % 5 == 0 ? std::numeric_limits<float>::quiet_NaN() : static_cast<float>(i % 11));
  }
  Writer writer(path, settings);
  writer.addAttribute({"points", ElementType::float64, 3, 1, 0, "m", "Koordinaten \u00d6sterreich"});
  writer.addAttribute({"heights", ElementType::float32, 1, -0.5, 10, "", "", "\u9ad8\u3055"});
  writer.addAttribute({"noise", ElementType::uint16});
  writer.addAttribute({"counters", ElementType::int64});
  writer.addAttribute({"classes", ElementType::uint8});
  writer.addAttribute({"gaps", ElementType::float32});
  writer.setMetadata("\u00c4 first by letter, last by byte", "\u65e5\u672c\n\tsecond line");
  writer.setMetadata("b", "");
  writer.write(records,
               {points.data(), heights.data(), noise.data(), counters.data(), classes.data(), gaps.data()});
  writer.finish();
}

/// Ids other than 1, 2, 3 in version 1, where no checksum covers them; copies by Python keep them.
void writeSurveyWithOtherIds(const std::string& path) {
  writeSurvey(path, version1(700));
  execute(path, "UPDATE attribute SET id = id * 1000000000000 - 2500000000000;"
                "UPDATE block SET attribute = attribute * 1000000000000 - 2500000000000");
}

/// What is copied.
struct Source {
  const char* name;
  void (*write)(const std::string& path);
};

const Source sources[] = {
    {"EveryTypeOfVersion1",
     [](const std::string& path) { copyDatabase(CORPUS "/version1/every_type.rdbx", path, version1(7)); }},
    {"EveryTypeWithoutChecksums",
     [](const std::string& path) {
       copyDatabase(CORPUS "/version1/every_type.rdbx", path, version1(7, false));
     }},
    {"EveryTypeRaw",
     [](const std::string& path) { copyDatabase(CORPUS "/version1/every_type.rdbx", path, {7}); }},
    {"EveryEncoding", &exampletest::writeEveryEncoding},
    {"SurveyOfVersion1", [](const std::string& path) { writeSurvey(path, version1(700)); }},
    {"SurveyRaw", [](const std::string& path) { writeSurvey(path, {700}); }},
    {"SurveyLz4",
     [](const std::string& path) {
       writeSurvey(path, {700, true, 2, BlockEncoding::lz4});
     }},
    {"SurveyDeflate",
     [](const std::string& path) {
       writeSurvey(path, {700, true, 2, BlockEncoding::deflate});
     }},
    {"SurveyWithOtherIds", &writeSurveyWithOtherIds},
    {"RareValuesRaw", [](const std::string& path) { exampletest::writeRareValues(path, {128}); }},
    {"RareValuesLz4",
     [](const std::string& path) {
       exampletest::writeRareValues(path, {128, true, 2, BlockEncoding::lz4});
     }},
};

void PrintTo(const Source& source, std::ostream* stream) {
  *stream << source.name;
}

class CopyByPython : public testing::TestWithParam<Source> {
 protected:
  void expectCopyWith(const std::string& encoding) {
    ASSERT_EQ(runExample("write_database.py", original + " " + copy + " --encoding " + encoding), 0);
    expectNoFindings(copy);
    expectSameContent(copy, expected);
  }
  support::TempDir directory;
  std::string original = directory.path("original.rdbx");
  std::string expected = directory.path("expected.rdbx");
  std::string copy = directory.path("copy.rdbx");
};

TEST_P(CopyByPython, HasTheSameContent) {
  GetParam().write(original);
  // Only version 2 has extents to compare with.
  copyDatabase(original, expected, {static_cast<std::uint32_t>(Database(original).blockRows())});
  expectCopyWith("raw");
  expectCopyWith("deflate");
}

INSTANTIATE_TEST_SUITE_P(Of, CopyByPython, testing::ValuesIn(sources),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(RareValues, AreStoredInPieces) {
  const support::TempDir directory;
  const std::string path = directory.path("rare.rdbx");
  exampletest::writeRareValues(path, {128, true, 2, BlockEncoding::lz4});
  const Database database(path);
  for (std::size_t i = 0; i < database.attributeCount(); ++i) {
    EXPECT_THAT(database.encoding(database.attribute(i).name, 0), testing::StartsWith("lz4"));
  }
}

class PythonExamples : public testing::Test {
 protected:
  void SetUp() override { writeSurvey(original, {700}); }
  support::TempDir directory;
  std::string original = directory.path("original.rdbx");
  std::string copy = directory.path("copy.rdbx");
  std::string text = directory.path("text");
};

TEST_F(PythonExamples, WriterChoosesAnEncodingForEachColumn) {
  ASSERT_EQ(runExample("write_database.py", original + " " + copy), 0);
  const Database database(copy);
  EXPECT_EQ(database.encoding("points", 1), "deflate, shuffle, scaled");
  EXPECT_EQ(database.encoding("heights", 1), "deflate, delta and shuffle, scaled");
  EXPECT_EQ(database.encoding("noise", 1), "raw");
  EXPECT_EQ(database.encoding("counters", 1), "deflate, delta and shuffle");
  EXPECT_EQ(database.encoding("classes", 1), "deflate");
}

TEST_F(PythonExamples, WriterTakesItsOwnRecordsPerBlock) {
  ASSERT_EQ(runExample("write_database.py", original + " " + copy + " --block-rows 1100"), 0);
  EXPECT_EQ(Database(copy).blockRows(), 1100U);
  EXPECT_EQ(readColumn<double>(copy, "points"), readColumn<double>(original, "points"));
}

TEST_F(PythonExamples, ReaderPrintsValuesAfterScaleAndOffset) {
  ASSERT_EQ(runExample("read_database.py", original + " heights >" + text), 0);
  std::istringstream printed(support::contentOf(text));
  const std::vector<double> found{std::istream_iterator<double>(printed), {}};
  EXPECT_EQ(found, readColumn<double>(original, "heights"));
}

TEST_F(PythonExamples, ReaderPrintsOneRecordPerLine) {
  ASSERT_EQ(runExample("read_database.py", original + " points 3 >" + text), 0);
  const std::string printed = support::contentOf(text);
  EXPECT_THAT(printed, testing::StartsWith("454000.342 5399000.228 300.2\n"));
  EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 3);
}

} // namespace
