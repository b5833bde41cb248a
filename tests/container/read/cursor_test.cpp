// SPDX-License-Identifier: BSD-3-Clause
// Reading through a cursor: binds, strides, positions, threads, damaged blocks.
#include "tests/container/database_file.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <gmock/gmock.h>
#include <numeric>

namespace {

using namespace containertest;
using testing::ElementsAre;

class Reading : public testing::Test {
 protected:
  void SetUp() override { writeSample(path); }
  std::string errorOfBind(void* buffer, int stride) {
    return errorOf(directory,
                   [&] { Cursor(Database(path)).bind("riegl.xyz", ElementType::float64, buffer, stride); });
  }
  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
  std::vector<double> points = std::vector<double>(30, -1);
  std::vector<unsigned char> classes = std::vector<unsigned char>(10, 99);
};

TEST_F(Reading, UnknownAttributeIsRefused) {
  EXPECT_EQ(
      errorOf(directory, [&] { Cursor(Database(path)).bind("riegl.no", ElementType::int8, points.data()); }),
      "the database has no such attribute (column \"riegl.no\" of scan.rdbx: expected one of its 2 "
      "attributes, "
      "found none of that name)");
}

TEST_F(Reading, NullBufferIsRefused) {
  EXPECT_EQ(errorOfBind(nullptr, 0),
            "the attribute cannot be bound (column \"riegl.xyz\": expected a buffer, found a null pointer)");
}

TEST_F(Reading, StrideBelowARecordIsRefused) {
  for (const int stride : {-24, -1, 1, 23}) {
    EXPECT_EQ(errorOfBind(points.data(), stride), "the attribute cannot be bound (column \"riegl.xyz\": "
                                                  "expected a stride of 0 or at least 24 bytes, found " +
                                                      std::to_string(stride) + ")");
  }
}

struct Interleaved {
  double point[3];
  float kind;
  unsigned char gap[5];
};

TEST_F(Reading, StrideLeavesTheGapsAlone) {
  std::vector<Interleaved> records(10);
  std::memset(static_cast<void*>(records.data()), 0x55, records.size() * sizeof(Interleaved));
  Cursor cursor{Database(path)};
  cursor.bind("riegl.xyz", ElementType::float64, &records[0].point, sizeof(Interleaved));
  cursor.bind("riegl.class", ElementType::float32, &records[0].kind, sizeof(Interleaved));
  ASSERT_EQ(cursor.next(10), 10U);
  for (unsigned i = 0; i < 10; ++i) {
    EXPECT_THAT(records[i].point, ElementsAre(3.0 * i, 3.0 * i + 1, 3.0 * i + 2));
    EXPECT_EQ(records[i].kind, static_cast<float>(i));
    EXPECT_THAT(records[i].gap, testing::Each(0x55));
  }
}

TEST_F(Reading, BufferMayHaveAnyAlignment) {
  std::vector<unsigned char> bytes(10 * sizeof(double) + 1);
  Cursor cursor{Database(path)};
  cursor.bind("riegl.class", ElementType::float64, bytes.data() + 1);
  ASSERT_EQ(cursor.next(10), 10U);
  double last = 0;
  std::memcpy(&last, bytes.data() + 1 + 9 * sizeof(double), sizeof last);
  EXPECT_EQ(last, 9);
}

TEST_F(Reading, StaysValidAfterTheFileIsReplaced) {
  const Database database(path);
  writeColumn(path, {"other", ElementType::float32}, std::vector<float>(5));
  Cursor cursor(database);
  cursor.bind("riegl.class", ElementType::uint8, classes.data());
  EXPECT_EQ(cursor.next(10), 10U);
  EXPECT_EQ(classes[9], 9);
}

TEST_F(Reading, ErrorLeavesThePositionWhereItWas) {
  execute(path, "UPDATE block SET checksum = 17 WHERE attribute = 2 AND number = 1");
  Cursor cursor{Database(path)};
  cursor.bind("riegl.class", ElementType::uint8, classes.data());
  EXPECT_EQ(cursor.next(3), 3U);
  EXPECT_THROW(cursor.next(3), Error);
  EXPECT_THROW(cursor.next(3), Error);
  EXPECT_EQ(cursor.next(1), 1U);
  EXPECT_EQ(classes[0], 3);
}

TEST_F(Reading, BlockIsVerifiedBeforeAnyOfItIsDelivered) {
  execute(path, "UPDATE block SET data = x'00010299' WHERE attribute = 2 AND number = 0");
  Cursor cursor{Database(path)};
  cursor.bind("riegl.class", ElementType::uint8, classes.data());
  EXPECT_THROW(cursor.next(1), Error);
}

TEST_F(Reading, ColumnBoundInTheMiddleOfABlockIsVerifiedToo) {
  execute(path, "UPDATE block SET data = x'99010203' WHERE attribute = 2 AND number = 0");
  Cursor cursor{Database(path)};
  EXPECT_EQ(cursor.next(2), 2U);
  cursor.bind("riegl.class", ElementType::uint8, classes.data());
  EXPECT_THROW(cursor.next(2), Error);
}

TEST_F(Reading, BlocksWithoutChecksumAreRead) {
  execute(path, "UPDATE block SET checksum = NULL");
  EXPECT_EQ(readColumn<unsigned char>(path, "riegl.class", 3).size(), 10U);
}

TEST_F(Reading, FirstBlockThenFirstBindNamesTheError) {
  execute(path, "UPDATE block SET checksum = 17 WHERE number = 1");
  for (const unsigned threads : {1U, 2U, 8U}) {
    Cursor cursor(Database(path, threads));
    cursor.bind("riegl.class", ElementType::uint8, classes.data());
    cursor.bind("riegl.xyz", ElementType::float64, points.data());
    EXPECT_THAT(errorOf(directory, [&] { cursor.next(10); }),
                testing::HasSubstr("column \"riegl.class\" of scan.rdbx, block 1:"));
  }
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
    writer.addAttribute({"number", ElementType::uint32});
    writer.addAttribute({"twice", ElementType::uint32, 1, 2, 0});
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
    Cursor cursor(Database(path, threads));
    cursor.bind("number", ElementType::uint32, found.data());
    cursor.bind("twice", ElementType::float64, twice.data());
    ASSERT_EQ(cursor.next(records), records);
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
    Cursor cursor(Database(path, 4));
    cursor.bind("twice", ElementType::float64, twice.data());
    cursor.bind("number", ElementType::uint32, found.data());
    EXPECT_THAT(errorOf(directory, [&] { cursor.next(records); }),
                testing::HasSubstr("\"twice\" of scan.rdbx, block 40:"));
  }
}

TEST_F(ManyThreads, ReadTheFileThatWasOpenedThoughAnotherHasItsName) {
  const Database database(path, 2);
  const std::vector<std::uint32_t> opened = numbers;
  std::reverse(numbers.begin(), numbers.end());
  writeNumbers();
  std::vector<std::uint32_t> found(records);
  std::vector<std::uint64_t> twice(records);
  Cursor cursor(database);
  cursor.bind("number", ElementType::uint32, found.data());
  cursor.bind("twice", ElementType::uint64, twice.data());
  EXPECT_EQ(cursor.next(records), records);
  EXPECT_EQ(found, opened);
}

TEST_F(ManyThreads, GoOnWithOneWhenTheFileIsGone) {
  const Database database(path, 2);
  ASSERT_EQ(std::remove(path.c_str()), 0);
  std::vector<std::uint32_t> found(records);
  std::vector<double> twice(records);
  Cursor cursor(database);
  cursor.bind("number", ElementType::uint32, found.data());
  cursor.bind("twice", ElementType::float64, twice.data());
  EXPECT_EQ(cursor.next(records), records);
  EXPECT_EQ(found, numbers);
}

} // namespace
