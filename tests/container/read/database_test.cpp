// SPDX-License-Identifier: BSD-3-Clause
// Opening a database: its catalogue, its metadata, and unusual paths.
#include "tests/container/database_file.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace {

using namespace containertest;
using testing::ElementsAre;

class OpenDatabase : public testing::Test {
 protected:
  void SetUp() override { writeSample(path); }
  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
};

TEST_F(OpenDatabase, HasItsSizeAndItsAttributesInOrder) {
  const Database database(path);
  EXPECT_EQ(database.recordCount(), 10U);
  EXPECT_EQ(database.blockRows(), 4U);
  ASSERT_EQ(database.attributeCount(), 2U);
  EXPECT_EQ(database.attribute(0).name, "riegl.xyz");
  EXPECT_EQ(database.find("riegl.class"), &database.attribute(1));
  EXPECT_EQ(database.find("riegl.clas"), nullptr);
}

TEST_F(OpenDatabase, DescribesAnAttributeAsItWasWritten) {
  const Attribute written{"a", ElementType::uint16, 3, 0.5, -2, "m", "A title", "Ein l\u00e4ngerer Text"};
  writeColumn(path, written, std::vector<std::uint16_t>(3));
  const Attribute found = Database(path).require("a");
  EXPECT_EQ(found.name + found.unit + found.title + found.description, "amA titleEin l\u00e4ngerer Text");
  EXPECT_EQ(found.type, ElementType::uint16);
  EXPECT_EQ(found.length, 3U);
  EXPECT_EQ(found.scale, 0.5);
  EXPECT_EQ(found.offset, -2.0);
}

TEST_F(OpenDatabase, CopiesShareTheFile) {
  const Database copy = Database(path);
  ASSERT_EQ(std::filesystem::remove(path), true);
  EXPECT_EQ(Database(copy).item("riegl.time_base"), "{}");
}

TEST_F(OpenDatabase, NameOfAnItemThatIsNoTextIsRefused) {
  execute(path, "INSERT INTO metadata VALUES (x'', '{}')");
  EXPECT_EQ(
      errorOf(directory, [this] { Database(path).itemNames(); }),
      "the database is damaged (table \"metadata\" of scan.rdbx: expected a text as name, found a blob)");
}

TEST_F(OpenDatabase, HasNoItemThatWasNotWritten) {
  EXPECT_EQ(Database(path).item("riegl.geo_tag"), std::nullopt);
}

const char* const oddNames[] = {"a b?c%20d#e.rdbx", "file:x?mode=ro", ":memory:", "\u00e4\u6f22.rdbx", "-"};

TEST_F(OpenDatabase, ReadsPathsThatSqliteCouldMisread) {
  for (const char* name : oddNames) {
    writeSample(directory.path(name));
    EXPECT_EQ(Database(directory.path(name)).recordCount(), 10U) << name;
  }
}

TEST_F(OpenDatabase, ReadsRelativePathsThatSqliteCouldMisread) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(directory.root());
  for (const char* name : oddNames) {
    EXPECT_NO_THROW(writeSample(name)) << name;
    EXPECT_NO_THROW(Database{name}) << name;
    EXPECT_TRUE(std::filesystem::exists(directory.path(name))) << name;
  }
  std::filesystem::current_path(before);
}

TEST_F(OpenDatabase, ItemsAreListedInTheOrderOfTheirBytes) {
  execute(path, "INSERT INTO metadata VALUES ('b', '{}'), ('B', '{}'), ('a', '{}')");
  EXPECT_THAT(Database(path).itemNames(), ElementsAre("B", "a", "b", "riegl.time_base"));
}

} // namespace
