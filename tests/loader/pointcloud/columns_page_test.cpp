// SPDX-License-Identifier: BSD-3-Clause
// Compares docs/columns.md with the list of the expected columns.
#include "tests/loader/pointcloud/expected_rows.h"
#include "tests/support/file_content.h"

#include <gtest/gtest.h>

namespace {

using pointcloudTest::ExpectedRow;
using pointcloudTest::expectedRows;

std::string lineOf(const ExpectedRow& row) {
  return "\n| `" + row.attribute + "` | `" + row.field + "` | " + row.type + " |" +
         (row.onlyWithAll ? " all |" : " |");
}

TEST(ColumnsPage, HasEveryRowInItsPlace) {
  const std::string page = support::contentOf(COLUMNS_PAGE);
  std::size_t place = page.find("\n|---|---|---|---|---|");
  for (const ExpectedRow& row : expectedRows()) {
    ASSERT_NE(place, std::string::npos);
    place = page.find("\n", place + 1);
    EXPECT_EQ(page.compare(place, lineOf(row).size(), lineOf(row)), 0)
        << "expected" << lineOf(row) << "\nfound" << page.substr(place, page.find('\n', place + 1) - place);
  }
  EXPECT_EQ(page.substr(page.find('\n', place + 1), 2), "\n\n");
}

} // namespace
