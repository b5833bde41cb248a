// SPDX-License-Identifier: BSD-3-Clause
// The canonical text of a catalogue, to the byte, and its checksums.
#include "container/format/catalogue_text.h"

#include "container/format/part_checksum.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace container;

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr double infinity = std::numeric_limits<double>::infinity();

template <class Row>
std::string line(const Row& row) {
  std::string text;
  appendLine(row, text);
  return text;
}

// The example that docs/database-format.md works out.
const AttributeRow points{.id = 1,
                          .name = "riegl.xyz",
                          .type = "float64",
                          .length = 3,
                          .unit = "m",
                          .title = "Koordinaten Österreich"};
const MetadataRow timeBase{"riegl.time_base", R"({"epoch": "2015-10-27T00:00:00+00:00"})"};
const BlockRow onlyBlock{.attribute = 1, .checksum = 1830403536, .bytes = 48};

TEST(CatalogueText, OfTheExampleIsItsText) {
  std::string text(catalogueHeading);
  appendLine(DatabaseRow{2, 1000000}, text);
  appendLine(points, text);
  appendLine(timeBase, text);
  appendLine(onlyBlock, text);
  EXPECT_EQ(text, "rdb2nimbra 2\n"
                  "database 2 1000000\n"
                  "attribute 1 9:riegl.xyz 7:float64 3 3ff0000000000000 0000000000000000 1:m "
                  "23:Koordinaten Österreich -\n"
                  "metadata 15:riegl.time_base 38:{\"epoch\": \"2015-10-27T00:00:00+00:00\"}\n"
                  "block 1 0 - 1830403536 48\n");
}

TEST(CatalogueText, OfTheExampleHasItsChecksum) {
  TextChecksum checksum(catalogueHeading);
  checksum.add(DatabaseRow{2, 1000000});
  checksum.add(points);
  checksum.add(timeBase);
  checksum.add(onlyBlock);
  EXPECT_EQ(checksum.value(), 2216246988U);
}

TEST(CatalogueText, OfTheExamplesExtentsHasItsChecksum) {
  TextChecksum checksum;
  checksum.add(ExtentRow{1, 0, 0, 1, 4, 0});
  checksum.add(ExtentRow{1, 0, 1, 2, 5, 0});
  checksum.add(ExtentRow{1, 0, 2, 3, 6, 0});
  EXPECT_EQ(checksum.value(), 513255105U);
}

TEST(CatalogueText, WritesIntegersInDecimal) {
  EXPECT_EQ(line(DatabaseRow{least, -1}), "database -9223372036854775808 -1\n");
  EXPECT_EQ(line(BlockRow{1, 2, "pieces", 4294967295, 0}), "block 1 2 6:pieces 4294967295 0\n");
}

TEST(CatalogueText, DistinguishesEmptyTextsFromAbsentOnes) {
  EXPECT_EQ(line(AttributeRow{7, "", "int8", 1, 1, 0, "", {}, ""}),
            "attribute 7 0: 4:int8 1 3ff0000000000000 0000000000000000 0: - 0:\n");
}

TEST(CatalogueText, CountsBytesOfTextsAndLeavesThemAsTheyAre) {
  using namespace std::string_view_literals;
  EXPECT_EQ(line(MetadataRow{"a b", "ö\n\0z"sv}), "metadata 3:a b 5:ö\n\0z\n"sv);
}

TEST(CatalogueText, WritesTheBitsOfReals) {
  EXPECT_EQ(line(ExtentRow{1, 0, 0, -0.0, 0.001, 5}), "extent 1 0 0 0000000000000000 3f50624dd2f1a9fc 5\n");
  EXPECT_EQ(line(ExtentRow{1, 0, 0, -infinity, infinity, 0}),
            "extent 1 0 0 fff0000000000000 7ff0000000000000 0\n");
  EXPECT_EQ(line(ExtentRow{1, 2, 15, {}, {}, 3}), "extent 1 2 15 - - 3\n");
  EXPECT_EQ(line(AttributeRow{1, "a", "int8", 1, -0.0, -1}),
            "attribute 1 1:a 4:int8 1 0000000000000000 bff0000000000000 - - -\n");
}

TEST(CatalogueText, IsSummedUpInAnyNumberOfLines) {
  std::string whole(catalogueHeading);
  TextChecksum checksum(catalogueHeading);
  for (std::int64_t number = 0; number < 5000; ++number) {
    const BlockRow row{1, number, "pieces", number * 77, 262144};
    appendLine(row, whole);
    checksum.add(row);
    if (number % 1000 == 0) {
      EXPECT_EQ(checksum.value(), continuedChecksum(0, whole.data(), whole.size())) << number;
    }
  }
  EXPECT_EQ(checksum.value(), continuedChecksum(0, whole.data(), whole.size()));
}

} // namespace
