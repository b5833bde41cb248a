// SPDX-License-Identifier: BSD-3-Clause
// What every database client has to honour, as one suite that is compiled against each of them.
// Include the client's own front header first; then instantiate with a class that offers
//   static std::string make(const clientsuite::Contents&, const support::TempDir&);   // the path to open
// docs/integration.md shows how.
// Longer than other headers because it is all of a client's contract in one place.
#pragma once

#include "tests/support/temp_dir.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace clientsuite {

using riegl::rdb::pointcloud::DataType;
// By number: a client is free to name them as it likes.
inline constexpr DataType uint8{1};
inline constexpr DataType float32{9};
inline constexpr DataType float64{10};

struct ColumnContents {
  std::string name;
  unsigned length = 1;
  /// A whole number of 0 to 250, so that every element type holds it.
  std::function<unsigned char(std::uint64_t record, unsigned component)> value = pattern;

  static unsigned char pattern(std::uint64_t record, unsigned component) {
    return static_cast<unsigned char>((record * 7 + component * 3) % 251);
  }
};

struct Contents {
  std::uint64_t records = 0;
  std::vector<ColumnContents> columns;
  std::map<std::string, std::string> items;
};

/// Opens databases of given contents through the client.
template <class Client>
class ClientSuite : public testing::Test {
 protected:
  static constexpr unsigned loadBlock = 5'000'000;

  void givenDatabase(const Contents& contents) {
    database.open(Client::make(contents, directory), riegl::rdb::pointcloud::OpenSettings());
    query.emplace(database.select(""));
  }
  void givenRecords(std::uint64_t records) {
    givenDatabase({records, {{"riegl.class", 1}, {"riegl.xyz", 3}, {"riegl.rgba", 4}, {"own.name", 1}}, {}});
  }
  template <class Element>
  void bind(const std::string& name, DataType type, std::vector<Element>& buffer) {
    query->bind(name, type, buffer.data(), 0);
  }
  /// The index of the first of `records` that does not hold what the pattern says, or `records`.
  template <class Element>
  static std::uint64_t firstWrong(const std::vector<Element>& buffer, std::uint64_t firstRecord,
                                  std::uint64_t records, unsigned length = 1) {
    for (std::uint64_t i = 0; i < records * length; ++i) {
      const auto component = static_cast<unsigned>(i % length);
      if (buffer[i] != static_cast<Element>(ColumnContents::pattern(firstRecord + i / length, component))) {
        return i / length;
      }
    }
    return records;
  }
  template <class Element>
  void expectReadableAs(DataType type) {
    this->givenRecords(300);
    std::vector<Element> scalars(300);
    std::vector<Element> vectors(900);
    bind("riegl.class", type, scalars);
    bind("riegl.xyz", type, vectors);
    ASSERT_EQ(query->next(300), 300U);
    EXPECT_EQ(firstWrong(scalars, 0, 300), 300U);
    EXPECT_EQ(firstWrong(vectors, 0, 300, 3), 300U);
  }

  support::TempDir directory;
  riegl::rdb::Context context{"", ""};
  riegl::rdb::Pointcloud database{context};
  std::optional<riegl::rdb::pointcloud::QuerySelect> query;
};

TYPED_TEST_SUITE_P(ClientSuite);

TYPED_TEST_P(ClientSuite, PathThatDoesNotExistRaisesErrorWithTexts) {
  try {
    this->database.open(this->directory.path("none.rdbx"), riegl::rdb::pointcloud::OpenSettings());
    FAIL() << "opened";
  } catch (const riegl::rdb::Error& error) {
    EXPECT_STRNE(error.what(), "");
    EXPECT_STRNE(error.details(), "");
  }
}

TYPED_TEST_P(ClientSuite, ErrorIsAStandardException) {
  EXPECT_THROW(this->database.open(this->directory.path("none.rdbx"), riegl::rdb::pointcloud::OpenSettings()),
               std::exception);
}

TYPED_TEST_P(ClientSuite, DatabaseWithoutRecordsEndsAtOnce) {
  this->givenRecords(0);
  std::vector<double> buffer(1);
  this->bind("riegl.class", float64, buffer);
  EXPECT_EQ(this->query->next(this->loadBlock), 0U);
  EXPECT_EQ(this->query->next(this->loadBlock), 0U);
}

TYPED_TEST_P(ClientSuite, FullLastBlockIsFollowedByZero) {
  this->givenDatabase({this->loadBlock, {{"riegl.class", 1}}, {}});
  std::vector<unsigned char> buffer(this->loadBlock);
  this->bind("riegl.class", uint8, buffer);
  EXPECT_EQ(this->query->next(this->loadBlock), this->loadBlock);
  EXPECT_EQ(this->firstWrong(buffer, 0, this->loadBlock), this->loadBlock);
  EXPECT_EQ(this->query->next(this->loadBlock), 0U);
}

TYPED_TEST_P(ClientSuite, LastBlockMayHoldOneRecord) {
  this->givenDatabase({this->loadBlock + 1, {{"riegl.class", 1}}, {}});
  std::vector<unsigned char> buffer(this->loadBlock);
  this->bind("riegl.class", uint8, buffer);
  EXPECT_EQ(this->query->next(this->loadBlock), this->loadBlock);
  EXPECT_EQ(this->query->next(this->loadBlock), 1U);
  EXPECT_EQ(this->firstWrong(buffer, this->loadBlock, 1), 1U);
  EXPECT_EQ(this->firstWrong(std::vector(buffer.begin() + 1, buffer.end()), 1, this->loadBlock - 1),
            this->loadBlock - 1U);
  EXPECT_EQ(this->query->next(this->loadBlock), 0U);
}

TYPED_TEST_P(ClientSuite, EveryBlockGoesToTheBufferBoundLast) {
  this->givenRecords(1000);
  for (std::uint64_t position = 0; position < 1000; position += 125) {
    std::vector<float> fresh(125, -1);
    this->bind("riegl.class", float32, fresh);
    ASSERT_EQ(this->query->next(125), 125U);
    EXPECT_EQ(this->firstWrong(fresh, position, 125), 125U) << "after " << position;
  }
  EXPECT_EQ(this->query->next(125), 0U);
}

TYPED_TEST_P(ClientSuite, SecondBindLeavesTheFirstBufferAlone) {
  this->givenRecords(10);
  std::vector<double> first(10, -1);
  std::vector<double> second(10, -1);
  this->bind("riegl.class", float64, first);
  this->bind("riegl.class", float64, second);
  EXPECT_EQ(this->query->next(10), 10U);
  EXPECT_EQ(first, std::vector<double>(10, -1));
  EXPECT_EQ(this->firstWrong(second, 0, 10), 10U);
}

TYPED_TEST_P(ClientSuite, BufferBoundOnceIsFilledFromItsStartEachTime) {
  this->givenRecords(7);
  std::vector<double> buffer(4);
  this->bind("riegl.class", float64, buffer);
  EXPECT_EQ(this->query->next(4), 4U);
  EXPECT_EQ(this->query->next(4), 3U);
  EXPECT_EQ(this->firstWrong(buffer, 4, 3), 3U);
  EXPECT_EQ(buffer[3], ColumnContents::pattern(3, 0)); // beyond the block's end nothing is written
}

TYPED_TEST_P(ClientSuite, ColumnsOfOtherLengthsKeepTheirRecordsTogether) {
  this->givenRecords(50);
  std::vector<double> points(150);
  std::vector<unsigned char> colours(200);
  this->bind("riegl.xyz", float64, points);
  this->bind("riegl.rgba", uint8, colours);
  EXPECT_EQ(this->query->next(50), 50U);
  EXPECT_EQ(this->firstWrong(points, 0, 50, 3), 50U);
  EXPECT_EQ(this->firstWrong(colours, 0, 50, 4), 50U);
}

TYPED_TEST_P(ClientSuite, EveryRequestedTypeIsDelivered) {
  this->template expectReadableAs<unsigned char>(DataType{1});
  this->template expectReadableAs<unsigned short>(DataType{3});
  this->template expectReadableAs<short>(DataType{4});
  this->template expectReadableAs<unsigned int>(DataType{5});
  this->template expectReadableAs<int>(DataType{6});
  this->template expectReadableAs<unsigned long long>(DataType{7});
  this->template expectReadableAs<float>(DataType{9});
  this->template expectReadableAs<double>(DataType{10});
}

TYPED_TEST_P(ClientSuite, AttributesAreThereByNameOnly) {
  this->givenRecords(1);
  EXPECT_TRUE(this->database.pointAttribute().exists("riegl.class"));
  EXPECT_TRUE(this->database.pointAttribute().exists("own.name")); // no list of known names limits a database
  EXPECT_FALSE(this->database.pointAttribute().exists("riegl.clas"));
  EXPECT_FALSE(this->database.pointAttribute().exists(""));
}

TYPED_TEST_P(ClientSuite, BindOfAnAbsentAttributeRaisesError) {
  this->givenRecords(1);
  std::vector<double> buffer(1);
  EXPECT_THROW(this->bind("riegl.absent", float64, buffer), riegl::rdb::Error);
}

TYPED_TEST_P(ClientSuite, QueryWithoutBindCountsOn) {
  this->givenRecords(10);
  EXPECT_EQ(this->query->next(6), 6U);
  std::vector<double> buffer(6);
  this->bind("riegl.class", float64, buffer);
  EXPECT_EQ(this->query->next(6), 4U);
  EXPECT_EQ(this->firstWrong(buffer, 6, 4), 4U);
}

TYPED_TEST_P(ClientSuite, CopiesOfAQueryShareThePosition) {
  this->givenRecords(10);
  riegl::rdb::pointcloud::QuerySelect copy = *this->query;
  EXPECT_EQ(copy.next(7), 7U);
  EXPECT_EQ(this->query->next(7), 3U);
}

TYPED_TEST_P(ClientSuite, MetadataIsTextByName) {
  this->givenDatabase({0, {}, {{"riegl.time_base", "{\"epoch\": \"\u00e9\"}"}, {"riegl.empty", ""}}});
  const riegl::rdb::Pointcloud& constant = this->database;
  EXPECT_TRUE(this->database.metaData().exists("riegl.time_base"));
  EXPECT_TRUE(constant.metaData().exists("riegl.empty"));
  EXPECT_EQ(this->database.metaData().get("riegl.time_base", ""), "{\"epoch\": \"\u00e9\"}");
  EXPECT_EQ(constant.metaData().get("riegl.empty", "other"), "");
}

TYPED_TEST_P(ClientSuite, AbsentMetadataGivesTheFallback) {
  this->givenDatabase({0, {}, {}});
  EXPECT_FALSE(this->database.metaData().exists("riegl.geo_tag"));
  EXPECT_EQ(this->database.metaData().get("riegl.geo_tag", ""), "");
  EXPECT_EQ(this->database.metaData().get("riegl.geo_tag", "none"), "none");
}

REGISTER_TYPED_TEST_SUITE_P(ClientSuite, PathThatDoesNotExistRaisesErrorWithTexts, ErrorIsAStandardException,
                            DatabaseWithoutRecordsEndsAtOnce, FullLastBlockIsFollowedByZero,
                            LastBlockMayHoldOneRecord, EveryBlockGoesToTheBufferBoundLast,
                            SecondBindLeavesTheFirstBufferAlone, BufferBoundOnceIsFilledFromItsStartEachTime,
                            ColumnsOfOtherLengthsKeepTheirRecordsTogether, EveryRequestedTypeIsDelivered,
                            AttributesAreThereByNameOnly, BindOfAnAbsentAttributeRaisesError,
                            QueryWithoutBindCountsOn, CopiesOfAQueryShareThePosition, MetadataIsTextByName,
                            AbsentMetadataGivesTheFallback);

} // namespace clientsuite
