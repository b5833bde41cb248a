// SPDX-License-Identifier: BSD-3-Clause
// What the embedded client makes of binds, strides, positions, threads and lifetimes.
#include "tests/platform/client/database_file.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <gmock/gmock.h>
#include <numeric>
#include <tuple>

namespace {

using namespace rdbtest;
using testing::ElementsAre;

class Query : public testing::Test {
 protected:
  void SetUp() override { writeSample(path); }
  std::string errorOfBind(const std::string& name, DataType type, void* buffer, int stride) {
    return errorOf(directory, [&] { open(path)->select("").bind(name, type, buffer, stride); });
  }
  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
  std::vector<double> points = std::vector<double>(30, -1);
  std::vector<unsigned char> classes = std::vector<unsigned char>(10, 99);
};

TEST_F(Query, UnknownAttributeIsRefused) {
  EXPECT_EQ(
      errorOfBind("riegl.nothing", DataType::FLOAT64, points.data(), 0),
      "the database has no such attribute (column \"riegl.nothing\" of scan.rdbx: expected one of its 2 "
      "attributes, found none of that name)");
}

TEST_F(Query, NullBufferIsRefused) {
  EXPECT_EQ(errorOfBind("riegl.xyz", DataType::FLOAT64, nullptr, 0),
            "the attribute cannot be bound (column \"riegl.xyz\": expected a buffer, found a null pointer)");
}

TEST_F(Query, UnknownDataTypeIsRefused) {
  for (const unsigned number : {0U, 11U, 4294967295U}) {
    EXPECT_EQ(errorOfBind("riegl.xyz", DataType{number}, points.data(), 0),
              "the attribute cannot be bound (column \"riegl.xyz\": expected a data type of 1 to 10, found " +
                  std::to_string(number) + ")");
  }
}

TEST_F(Query, StrideBelowARecordIsRefused) {
  for (const int stride : {-24, -1, 1, 23}) {
    EXPECT_EQ(
        errorOfBind("riegl.xyz", DataType::FLOAT64, points.data(), stride),
        "the attribute cannot be bound (column \"riegl.xyz\": expected a stride of 0 or at least 24 bytes, "
        "found " +
            std::to_string(stride) + ")");
  }
}

class KnownLength : public Query,
                    public testing::WithParamInterface<std::tuple<const char*, unsigned, unsigned>> {
 protected:
  std::string errorOfLength(unsigned length) {
    const std::string name = std::get<0>(GetParam());
    writeColumn(path, {name, StoredType::uint8, length}, std::vector<unsigned char>(length));
    return errorOfBind(name, DataType::FLOAT64, points.data(), 0);
  }
};

TEST_P(KnownLength, IsKeptByTheAttributeOfThatName) {
  const auto [name, least, most] = GetParam();
  for (unsigned length = 1; length <= 5; ++length) {
    const std::string refused = "the attribute has another length than its name stands for (column \"" +
                                std::string(name) + "\" of scan.rdbx: expected " + std::to_string(most) +
                                " values a record, found " + std::to_string(length) + ")";
    EXPECT_EQ(errorOfLength(length), least <= length && length <= most ? "no error" : refused);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Attributes, KnownLength,
    testing::Values(std::tuple("riegl.xyz", 3, 3), std::tuple("riegl.xyz_socs", 3, 3),
                    std::tuple("riegl.pof_xyz", 3, 3), std::tuple("riegl.shot_origin", 3, 3),
                    std::tuple("riegl.shot_direction", 3, 3), std::tuple("riegl.direction_medium", 3, 3),
                    std::tuple("riegl.hydro_intersection_point", 1, 3),
                    std::tuple("riegl.hydro_intersection_normal", 1, 3), std::tuple("riegl.timestamp", 1, 1),
                    std::tuple("riegl.window_echo_impact_corrected", 1, 1), std::tuple("xyz", 1, 5),
                    std::tuple("riegl.own", 1, 5)));

TEST_F(Query, FilterIsRefused) {
  EXPECT_EQ(
      errorOf(directory, [&] { open(path)->select("riegl.class == 2"); }),
      "filters are not offered (query on scan.rdbx: expected an empty filter, found \"riegl.class == 2\")");
}

TEST_F(Query, NothingIsOfferedBeforeOpen) {
  Pointcloud database(riegl::rdb::Context("", ""));
  const std::string closed = "no database is open (expected a call of open before, found none)";
  EXPECT_EQ(errorOf(directory, [&] { database.select(""); }), closed);
  EXPECT_EQ(errorOf(directory, [&] { database.metaData().exists("a"); }), closed);
  EXPECT_EQ(errorOf(directory, [&] { database.pointAttribute().exists("a"); }), closed);
  EXPECT_EQ(errorOf(directory, [] { QuerySelect().next(1); }), closed);
}

struct Interleaved {
  double point[3];
  float kind;
  unsigned char gap[5];
};

TEST_F(Query, StrideLeavesTheGapsAlone) {
  std::vector<Interleaved> records(10);
  std::memset(static_cast<void*>(records.data()), 0x55, records.size() * sizeof(Interleaved));
  QuerySelect query = open(path)->select("");
  query.bind("riegl.xyz", DataType::FLOAT64, &records[0].point, sizeof(Interleaved));
  query.bind("riegl.class", DataType::FLOAT32, &records[0].kind, sizeof(Interleaved));
  ASSERT_EQ(query.next(10), 10U);
  for (unsigned i = 0; i < 10; ++i) {
    EXPECT_THAT(records[i].point, ElementsAre(3.0 * i, 3.0 * i + 1, 3.0 * i + 2));
    EXPECT_EQ(records[i].kind, static_cast<float>(i));
    EXPECT_THAT(records[i].gap, testing::Each(0x55));
  }
}

TEST_F(Query, BufferMayHaveAnyAlignment) {
  std::vector<unsigned char> bytes(10 * sizeof(double) + 1);
  QuerySelect query = open(path)->select("");
  query.bind("riegl.class", DataType::FLOAT64, bytes.data() + 1, 0);
  ASSERT_EQ(query.next(10), 10U);
  double last = 0;
  std::memcpy(&last, bytes.data() + 1 + 9 * sizeof(double), sizeof last);
  EXPECT_EQ(last, 9);
}

TEST_F(Query, StaysValidAfterItsDatabaseIsGone) {
  auto database = open(path);
  QuerySelect query = database->select("");
  database.reset();
  query.bind("riegl.class", DataType::UINT8, classes.data(), 0);
  EXPECT_EQ(query.next(10), 10U);
  EXPECT_THAT(classes, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9));
}

TEST_F(Query, StaysValidAfterTheFileIsReplaced) {
  const auto database = open(path);
  writeColumn(path, {"other", StoredType::float32}, std::vector<float>(5));
  QuerySelect query = database->select("");
  query.bind("riegl.class", DataType::UINT8, classes.data(), 0);
  EXPECT_EQ(query.next(10), 10U);
  EXPECT_EQ(classes[9], 9);
}

TEST_F(Query, ErrorLeavesThePositionWhereItWas) {
  execute(path, "UPDATE block SET checksum = 17 WHERE attribute = 2 AND number = 1");
  QuerySelect query = open(path)->select("");
  query.bind("riegl.class", DataType::UINT8, classes.data(), 0);
  EXPECT_EQ(query.next(3), 3U);
  EXPECT_THROW(query.next(3), Error);
  EXPECT_THROW(query.next(3), Error);
  EXPECT_EQ(query.next(1), 1U);
  EXPECT_EQ(classes[0], 3);
}

TEST_F(Query, BlockIsVerifiedBeforeAnyOfItIsDelivered) {
  execute(path, "UPDATE block SET data = x'00010299' WHERE attribute = 2 AND number = 0");
  QuerySelect query = open(path)->select("");
  query.bind("riegl.class", DataType::UINT8, classes.data(), 0);
  EXPECT_THROW(query.next(1), Error);
}

TEST_F(Query, ColumnBoundInTheMiddleOfABlockIsVerifiedToo) {
  execute(path, "UPDATE block SET data = x'99010203' WHERE attribute = 2 AND number = 0");
  QuerySelect query = open(path)->select("");
  EXPECT_EQ(query.next(2), 2U);
  query.bind("riegl.class", DataType::UINT8, classes.data(), 0);
  EXPECT_THROW(query.next(2), Error);
}

TEST_F(Query, BlocksWithoutChecksumAreRead) {
  execute(path, "UPDATE block SET checksum = NULL");
  EXPECT_EQ(readColumn<unsigned char>(path, "riegl.class", DataType::UINT8, 3).size(), 10U);
}

TEST_F(Query, FirstBlockThenFirstBindNamesTheError) {
  execute(path, "UPDATE block SET checksum = 17 WHERE number = 1");
  for (const unsigned threads : {1U, 2U, 8U}) {
    QuerySelect query = open(path, threads)->select("");
    query.bind("riegl.class", DataType::UINT8, classes.data(), 0);
    query.bind("riegl.xyz", DataType::FLOAT64, points.data(), 0);
    EXPECT_THAT(errorOf(directory, [&] { query.next(10); }),
                testing::HasSubstr("column \"riegl.class\" of scan.rdbx, block 1:"));
  }
}

const char* const oddNames[] = {"a b?c%20d#e.rdbx", "file:x?mode=ro", ":memory:", "\u00e4\u6f22.rdbx", "-"};

TEST_F(Query, ReadsPathsThatLookLikeSomethingElse) {
  for (const char* name : oddNames) {
    writeSample(directory.path(name));
    EXPECT_EQ(open(directory.path(name))->recordCount(), 10U) << name;
  }
}

TEST_F(Query, ReadsRelativePathsThatLookLikeSomethingElse) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(directory.root());
  for (const char* name : oddNames) {
    EXPECT_NO_THROW(writeSample(name)) << name;
    EXPECT_NO_THROW(open(name)) << name;
    EXPECT_TRUE(std::filesystem::exists(directory.path(name))) << name;
  }
  std::filesystem::current_path(before);
}

TEST_F(Query, CatalogueTellsWhatAnAttributeIs) {
  const auto database = open(path);
  const auto attribute = database->pointAttribute().get("riegl.xyz");
  EXPECT_THAT(database->pointAttribute().list(), ElementsAre("riegl.xyz", "riegl.class"));
  EXPECT_EQ(attribute.title + "|" + attribute.unit + "|" + attribute.description,
            "XYZ|m|Cartesian coordinates");
  EXPECT_EQ(attribute.length, 3U);
  EXPECT_EQ(attribute.dataType(), DataType::FLOAT64);
  EXPECT_EQ(database->pointAttribute().get("riegl.class").dataType(), DataType::UINT8);
  EXPECT_THAT(database->metaData().list(), ElementsAre("riegl.time_base"));
}

TEST_F(Query, ItemsAreListedInTheOrderOfTheirBytes) {
  execute(path, "INSERT INTO metadata VALUES ('b', '{}'), ('B', '{}'), ('a', '{}')");
  EXPECT_THAT(open(path)->metaData().list(), ElementsAre("B", "a", "b", "riegl.time_base"));
}

/// 2 million records of two columns: enough for several threads to take part.
class ManyThreads : public testing::Test {
 protected:
  void SetUp() override {
    std::iota(numbers.begin(), numbers.end(), 0);
    writeNumbers();
  }
  void writeNumbers() {
    Writer writer(path, {10'000, true});
    writer.addAttribute({"number", StoredType::uint32});
    writer.addAttribute({"twice", StoredType::uint32, 1, 2, 0});
    writer.write(records, {numbers.data(), numbers.data()});
    writer.finish();
  }
  static constexpr unsigned records = 2'000'000;
  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
  std::vector<std::uint32_t> numbers = std::vector<std::uint32_t>(records);
};

TEST_F(ManyThreads, DeliverWhatOneThreadDelivers) {
  for (const unsigned threads : {1U, 2U, 5U}) {
    std::vector<std::uint32_t> found(records);
    std::vector<double> twice(records);
    QuerySelect query = open(path, threads)->select("");
    query.bind("number", DataType::UINT32, found.data(), 0);
    query.bind("twice", DataType::FLOAT64, twice.data(), 0);
    ASSERT_EQ(query.next(records), records);
    EXPECT_EQ(found, numbers);
    EXPECT_TRUE(std::equal(twice.begin(), twice.end(), numbers.begin(),
                           [](double value, std::uint32_t number) { return value == 2.0 * number; }));
  }
}

TEST_F(ManyThreads, RaiseTheErrorOfTheFirstDamagedBlock) {
  execute(path, "UPDATE block SET checksum = 17 WHERE number IN (40, 41, 42, 120)");
  for (int round = 0; round < 20; ++round) {
    std::vector<std::uint32_t> found(records);
    std::vector<double> twice(records);
    QuerySelect query = open(path, 4)->select("");
    query.bind("twice", DataType::FLOAT64, twice.data(), 0);
    query.bind("number", DataType::UINT32, found.data(), 0);
    EXPECT_THAT(errorOf(directory, [&] { query.next(records); }),
                testing::HasSubstr("\"twice\" of scan.rdbx, block 40:"));
  }
}

TEST_F(ManyThreads, ReadTheFileThatWasOpenedThoughAnotherHasItsName) {
  const auto database = open(path, 2);
  const std::vector<std::uint32_t> opened = numbers;
  std::reverse(numbers.begin(), numbers.end());
  writeNumbers();
  std::vector<std::uint32_t> found(records);
  std::vector<std::uint64_t> twice(records);
  QuerySelect query = database->select("");
  query.bind("number", DataType::UINT32, found.data(), 0);
  query.bind("twice", DataType::UINT64, twice.data(), 0);
  EXPECT_EQ(query.next(records), records);
  EXPECT_EQ(found, opened);
}

TEST_F(ManyThreads, GoOnWithOneWhenTheFileIsGone) {
  const auto database = open(path, 2);
  ASSERT_EQ(std::remove(path.c_str()), 0);
  std::vector<std::uint32_t> found(records);
  std::vector<double> twice(records);
  QuerySelect query = database->select("");
  query.bind("number", DataType::UINT32, found.data(), 0);
  query.bind("twice", DataType::FLOAT64, twice.data(), 0);
  EXPECT_EQ(query.next(records), records);
  EXPECT_EQ(found, numbers);
}

} // namespace
