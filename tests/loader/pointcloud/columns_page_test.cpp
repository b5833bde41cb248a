// SPDX-License-Identifier: BSD-3-Clause
// Compares docs/columns.md with the list of the expected columns and with the table of attributes.
#include "names/names.h"
#include "tests/loader/pointcloud/expected_rows.h"
#include "tests/support/file_content.h"

#include <gtest/gtest.h>

namespace {

using pointcloudTest::ExpectedRow;
using pointcloudTest::expectedRows;

/// Values per record as the page shows them, "1" or "1 to 3".
std::string valuesOf(const std::string& name) {
  const Riegl::Attribute* const attribute = Riegl::attributes::find(name);
  if (attribute == nullptr) {
    return name + " is not in names/names.h";
  }
  const std::string most = std::to_string(attribute->mostValues);
  const std::string least = std::to_string(attribute->leastValues);
  return least == most ? most : least + " to " + most;
}

std::string lineOf(const ExpectedRow& row) {
  return "\n| `" + row.attribute + "` | `" + row.field + "` | " + row.type + " | " + valuesOf(row.attribute) +
         " |" + (row.onlyWithAll ? " all |" : " |");
}

TEST(ColumnsPage, HasEveryRowInItsPlace) {
  const std::string page = support::contentOf(COLUMNS_PAGE);
  std::size_t place = page.find("\n|---|---|---|---|---|---|");
  for (const ExpectedRow& row : expectedRows()) {
    ASSERT_NE(place, std::string::npos);
    place = page.find("\n", place + 1);
    EXPECT_EQ(page.compare(place, lineOf(row).size(), lineOf(row)), 0)
        << "expected" << lineOf(row) << "\nfound" << page.substr(place, page.find('\n', place + 1) - place);
  }
  EXPECT_EQ(page.substr(page.find('\n', place + 1), 2), "\n\n");
}

TEST(ColumnsPage, HasEveryAttributeWithALengthOfItsOwn) {
  const std::string page = support::contentOf(COLUMNS_PAGE);
  for (const Riegl::Attribute& attribute : Riegl::attributes::table) {
    EXPECT_NE(page.find("\n| `" + std::string(attribute.name) + "` | `"), std::string::npos)
        << attribute.name;
  }
}

TEST(ColumnsPage, StatesTheFailureOfTwoTimeColumnsAtBothRows) {
  const std::string page = support::contentOf(COLUMNS_PAGE);
  EXPECT_NE(page.find("the load fails if the database has `riegl.shot_timestamp_hr` too"), std::string::npos);
  EXPECT_NE(page.find("the load fails if the database has `riegl.timestamp` too"), std::string::npos);
}

} // namespace
