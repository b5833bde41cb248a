// SPDX-License-Identifier: BSD-3-Clause
// Tests the content that a load expects of a database by its name.
#include "apps/common/database_content.h"

#include <gtest/gtest.h>

namespace {

using apps::DatabaseContent;

TEST(DatabaseContentByName, FollowsTheExactExtension) {
  const std::pair<const char*, DatabaseContent> cases[] = {
      {"flight.pofx", DatabaseContent::trajectory},
      {"a folder/flight.v2.pofx", DatabaseContent::trajectory},
      {"shots.sodx", DatabaseContent::shots},
      {"scan.rdbx", DatabaseContent::points},
      {"flight.POFX", DatabaseContent::points},
      {"flight.pofx.rdbx", DatabaseContent::points},
      {".sodx", DatabaseContent::points},
      {"flights.pofx/scan", DatabaseContent::points},
      {"", DatabaseContent::points},
  };
  for (const auto& [path, content] : cases) {
    EXPECT_EQ(apps::contentByName(path), content) << path;
  }
}

} // namespace
