// SPDX-License-Identifier: BSD-3-Clause
// Fixture: a point-cloud load over the scripted client.
#pragma once

#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/scripted/script.h"
#include "tests/support/grid.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <vector>

namespace pointcloudTest {

/// An empty grid, and a database that starts without columns, records and metadata.
class ScriptedScan : public testing::Test {
 protected:
  ScriptedScan() : script(scripted::newScript()) {}

  /// Adds attributes to the database; reads leave their buffers as they were made.
  void givenColumns(std::initializer_list<const char*> names) {
    for (const char* const name : names) {
      script.columns[name] = nullptr;
    }
  }
  std::string load(bool all = false) { return Riegl::rdbx2Z4(path, grid, 0, all, nullptr); }
  /// Loads with standard error captured.
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
