// SPDX-License-Identifier: BSD-3-Clause
// What the embedded client adds to the container: data types, lengths by name, lifetimes, and its own Error.
#include "tests/platform/client/database_file.h"

#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <new>
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
    writeColumn(path, {name, container::ElementType::uint8, length}, std::vector<unsigned char>(length));
    return errorOfBind(name, DataType::FLOAT64, points.data(), 0);
  }
};

TEST_P(KnownLength, IsKeptByTheAttributeOfThatName) {
  const auto [name, least, most] = GetParam();
  for (unsigned length = 1; length <= 5; ++length) {
    const std::string refused = "the attribute has another length than its name stands for (column \"" +
                                std::string(name) + "\" of scan.rdbx: expected " + std::to_string(most) +
                                " values per record, found " + std::to_string(length) + ")";
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

TEST_F(Query, StaysValidAfterItsDatabaseIsGone) {
  auto database = open(path);
  QuerySelect query = database->select("");
  database.reset();
  query.bind("riegl.class", DataType::UINT8, classes.data(), 0);
  EXPECT_EQ(query.next(10), 10U);
  EXPECT_THAT(classes, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9));
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

TEST_F(Query, CatalogueDescribesAnAttribute) {
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

TEST_F(Query, FailedOpenLeavesTheDatabaseThatWasOpen) {
  const auto database = open(path);
  EXPECT_THROW(database->open(directory.path("none.rdbx"), OpenSettings()), Error);
  EXPECT_EQ(database->recordCount(), 10U);
}

/// An operation that fails on a sample with a damaged block, an item that is no text and an unnamed one.
struct Failing {
  const char* name;
  std::function<void(Pointcloud& database, void* buffer)> operation;
  riegl::rdb::ErrorKind kind;
  const char* error;
};

void PrintTo(const Failing& row, std::ostream* out) {
  *out << row.name;
}

using riegl::rdb::ErrorKind;

const Failing failing[] = {
    {"Open", [](auto& database, void*) { database.open("none.rdbx", {}); }, ErrorKind::cannotOpen,
     "cannot open the database (none.rdbx: expected a readable file, found: No such file or directory)"},
    {"OpenOtherContent", [](auto& database, void*) { database.open("other", {}); }, ErrorKind::wrongFormat,
     "the file is not a database of this kind (other: expected an SQLite file, found other content)"},
    {"MetaDataExists", [](auto& database, void*) { database.metaData().exists("riegl.time_base"); },
     ErrorKind::damaged,
     "the database is damaged (item \"riegl.time_base\" of scan.rdbx: expected a text, found a blob)"},
    {"MetaDataGet", [](auto& database, void*) { database.metaData().get("riegl.time_base"); },
     ErrorKind::damaged,
     "the database is damaged (item \"riegl.time_base\" of scan.rdbx: expected a text, found a blob)"},
    {"MetaDataList", [](auto& database, void*) { database.metaData().list(); }, ErrorKind::damaged,
     "the database is damaged (table \"metadata\" of scan.rdbx: expected a text as name, found a blob)"},
    {"AttributeGet", [](auto& database, void*) { database.pointAttribute().get("a"); }, ErrorKind::wrongUse,
     "the database has no such attribute (column \"a\" of scan.rdbx: expected one of its 2 attributes, found "
     "none of "
     "that name)"},
    {"Bind", [](auto& database, void* buffer) { database.select().bind("a", DataType::UINT8, buffer); },
     ErrorKind::wrongUse,
     "the database has no such attribute (column \"a\" of scan.rdbx: expected one of its 2 attributes, found "
     "none of "
     "that name)"},
    {"Next",
     [](auto& database, void* buffer) {
       QuerySelect query = database.select();
       query.bind("riegl.class", DataType::UINT8, buffer);
       query.next(10);
     },
     ErrorKind::damaged,
     "the database is damaged (column \"riegl.class\" of scan.rdbx, block 1: expected checksum 17, found "
     "1624488069)"},
};

class Failure : public Query, public testing::WithParamInterface<Failing> {
 protected:
  void SetUp() override {
    Query::SetUp();
    execute(path, "UPDATE block SET checksum = 17 WHERE attribute = 2 AND number = 1;"
                  "UPDATE metadata SET value = x'00'; INSERT INTO metadata VALUES (x'', '{}')");
    containertest::writeBytes(directory.path("other"), std::vector<char>(1000, 'x'));
    std::filesystem::current_path(directory.root());
  }
  void TearDown() override { std::filesystem::current_path(before); }
  std::filesystem::path before = std::filesystem::current_path();
};

TEST_P(Failure, LeavesAsTheClientsErrorWithKindAndTextsOfTheContainer) {
  const auto database = open(path);
  const auto operation = [&] { GetParam().operation(*database, classes.data()); };
  EXPECT_EQ(errorOf(directory, operation), GetParam().error);
  try {
    operation();
  } catch (const Error& error) {
    EXPECT_EQ(error.code(), static_cast<int>(GetParam().kind));
  }
}

INSTANTIATE_TEST_SUITE_P(Of, Failure, testing::ValuesIn(failing),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(Query, MemoryThatRunsOutLeavesAsItself) {
  execute(path, "UPDATE metadata SET value = hex(zeroblob(8000000))");
  const auto database = open(path);
  sqlite3_hard_heap_limit64(sqlite3_memory_used() + 4'000'000);
  EXPECT_THROW(database->metaData().get("riegl.time_base", ""), std::bad_alloc);
  sqlite3_hard_heap_limit64(0);
  EXPECT_EQ(database->metaData().get("riegl.time_base", "").size(), 16'000'000U);
}

} // namespace
