// SPDX-License-Identifier: BSD-3-Clause
// Files of version 1, as they were written before there was another version, are read value by value.
#include "container/read/verify.h"
#include "tests/container/corpus/every_type.h"
#include "tests/container/database_file.h"

#include <cstring>

namespace {

using namespace containertest;

std::string corpusFile(const std::string& name) {
  return std::string(CORPUS) + "/version1/" + name + ".rdbx";
}

template <class Element>
void expectColumn(const std::string& path, const std::string& name, const std::vector<Element>& expected) {
  const std::vector<Element> found = readColumn<Element>(path, name, 5);
  ASSERT_EQ(found.size(), expected.size()) << name;
  EXPECT_EQ(std::memcmp(found.data(), expected.data(), found.size() * sizeof(Element)), 0) << name;
}

class Version1Corpus : public testing::TestWithParam<const char*> {
 protected:
  std::string path = corpusFile(GetParam());
};

TEST_P(Version1Corpus, HasTheValuesOfEveryType) {
  const Database database(path);
  EXPECT_EQ(database.recordCount(), corpus::recordCount);
  EXPECT_EQ(database.blockRows(), corpus::blockRows);
  for (std::size_t type = 0; type < container::elementTypeCount; ++type) {
    container::visitElement(static_cast<ElementType>(type), [&]<class Element>(std::type_identity<Element>) {
      const Attribute expected = corpus::attributeOf(container::elementTypeOf<Element>);
      EXPECT_EQ(database.require(expected.name).length, expected.length);
      expectColumn(path, expected.name, corpus::column<Element>());
    });
  }
}

TEST_P(Version1Corpus, HasTheValuesAfterScaleAndOffset) {
  const std::vector<std::int32_t> stored = corpus::scaledColumn();
  std::vector<double> expected(stored.begin(), stored.end());
  for (double& value : expected) {
    value = value * 0.001 + 1000;
  }
  expectColumn(path, "scaled", expected);
}

TEST_P(Version1Corpus, HasTheTexts) {
  const Database database(path);
  const Attribute expected = corpus::scaledAttribute();
  const Attribute& found = database.require("scaled");
  EXPECT_EQ(found.unit + found.title + found.description,
            expected.unit + expected.title + expected.description);
  EXPECT_EQ(database.itemNames(), (std::vector<std::string>{corpus::firstItem, corpus::secondItem}));
  EXPECT_EQ(database.item(corpus::firstItem), corpus::firstText);
  EXPECT_EQ(database.item(corpus::secondItem), "");
}

INSTANTIATE_TEST_SUITE_P(Of, Version1Corpus, testing::Values("every_type", "without_checksums"),
                         [](const auto& row) { return row.param; });

TEST(Version1CorpusChecksums, AreThereInOneFileOnly) {
  const auto refuse = [](const std::string& what, const std::string& details) { FAIL() << what << details; };
  EXPECT_EQ(container::verify(corpusFile("every_type"), refuse).withoutChecksum, 0U);
  EXPECT_EQ(container::verify(corpusFile("without_checksums"), refuse).withoutChecksum, 33U);
}

TEST(Version1CorpusEmpty, HasAttributesAndItemsOnly) {
  const Database database(corpusFile("empty"));
  EXPECT_EQ(database.recordCount(), 0U);
  EXPECT_EQ(database.blockRows(), 1000000U);
  EXPECT_EQ(database.require("scaled").scale, 0.001);
  EXPECT_EQ(database.item(corpus::firstItem), corpus::firstText);
  EXPECT_TRUE(readColumn<double>(corpusFile("empty"), "scaled").empty());
}

} // namespace
