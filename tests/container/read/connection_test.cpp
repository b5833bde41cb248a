// SPDX-License-Identifier: BSD-3-Clause
// The limits and settings of a connection to a file of unknown origin.
#include "container/read/connection.h"

#include "tests/container/database_file.h"

namespace {

using container::Connection;
using container::Statement;

class OpenConnection : public testing::Test {
 protected:
  std::int64_t pragma(const char* sql) {
    Statement answer(*connection, sql, "setting");
    return answer.step() ? answer.integer(0) : -1;
  }
  int setting(int which) const {
    int isOn = -1;
    sqlite3_db_config(connection->handle(), which, -1, &isOn);
    return isOn;
  }
  int limit(int which) const { return sqlite3_limit(connection->handle(), which, -1); }

  void SetUp() override {
    containertest::writeSample(path);
    connection = std::make_unique<Connection>(path);
  }
  support::TempDir directory;
  std::string path = directory.path("scan.rdbx");
  std::unique_ptr<Connection> connection;
};

TEST_F(OpenConnection, OnlyReads) {
  EXPECT_EQ(sqlite3_db_readonly(connection->handle(), "main"), 1);
}

TEST_F(OpenConnection, ChecksCellsAndTrustsNoSchema) {
  EXPECT_EQ(pragma("PRAGMA cell_size_check"), 1);
  EXPECT_EQ(pragma("PRAGMA trusted_schema"), 0);
  EXPECT_EQ(setting(SQLITE_DBCONFIG_TRUSTED_SCHEMA), 0);
}

TEST_F(OpenConnection, IsDefensiveAndRunsNothingOfTheFiles) {
  EXPECT_EQ(setting(SQLITE_DBCONFIG_DEFENSIVE), 1);
  EXPECT_EQ(setting(SQLITE_DBCONFIG_ENABLE_TRIGGER), 0);
  EXPECT_EQ(setting(SQLITE_DBCONFIG_ENABLE_VIEW), 0);
}

TEST_F(OpenConnection, LimitsWhatAFileMayAskFor) {
  EXPECT_EQ(limit(SQLITE_LIMIT_SQL_LENGTH), 100'000);
  EXPECT_EQ(limit(SQLITE_LIMIT_EXPR_DEPTH), 20);
  EXPECT_EQ(limit(SQLITE_LIMIT_COMPOUND_SELECT), 3);
  EXPECT_EQ(limit(SQLITE_LIMIT_VDBE_OP), 25'000);
  EXPECT_EQ(limit(SQLITE_LIMIT_FUNCTION_ARG), 8);
  EXPECT_EQ(limit(SQLITE_LIMIT_ATTACHED), 0);
  EXPECT_EQ(limit(SQLITE_LIMIT_LIKE_PATTERN_LENGTH), 50);
  EXPECT_EQ(limit(SQLITE_LIMIT_VARIABLE_NUMBER), 10);
  EXPECT_EQ(limit(SQLITE_LIMIT_TRIGGER_DEPTH), 1);
}

TEST_F(OpenConnection, TakesNoValueLongerThanTheFile) {
  EXPECT_EQ(limit(SQLITE_LIMIT_LENGTH), 1'000'000); // the least, for small files
  containertest::writeColumn(path, {"a", container::ElementType::uint8},
                             std::vector<unsigned char>(3'000'000));
  connection = std::make_unique<Connection>(path);
  EXPECT_EQ(limit(SQLITE_LIMIT_LENGTH), static_cast<int>(connection->identity().bytes));
}

} // namespace
