// SPDX-License-Identifier: BSD-3-Clause
// A point-cloud load over the scripted client, in the words of a test.
#pragma once

#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/scripted/script.h"
#include "tests/support/grid.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <vector>

namespace pointcloudTest {

/// A database without columns, records and metadata at first, and an empty grid.
class ScriptedScan : public testing::Test {
 protected:
  ScriptedScan() : script(scripted::newScript()) {}

  /// Attributes that the database has; their records stay as the buffers were made.
  void givenColumns(std::initializer_list<const char*> names) {
    for (const char* const name : names) {
      script.columns[name] = nullptr;
    }
  }
  std::string load(bool all = false) { return Riegl::rdbx2Z4(path, grid, 0, all, nullptr); }
  /// The same with what it says on standard error kept off the test's own.
  std::string loadQuietly() {
    testing::internal::CaptureStderr();
    std::string result = load();
    testing::internal::GetCapturedStderr();
    return result;
  }

  std::string path = "folder/scan.rdbx";
  scripted::Script& script;
  Nimbra::Grid grid;
};

} // namespace pointcloudTest
