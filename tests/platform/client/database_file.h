// SPDX-License-Identifier: BSD-3-Clause
// The language of the container's tests, with the client's way to open and read a database.
#pragma once

#include "platform/client/rdb.h"
#include "tests/container/database_file.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace rdbtest {

using containertest::execute;
using containertest::writeColumn;
using containertest::writeSample;
using riegl::rdb::Error;
using riegl::rdb::Pointcloud;
using riegl::rdb::pointcloud::DataType;
using riegl::rdb::pointcloud::OpenSettings;
using riegl::rdb::pointcloud::QuerySelect;

inline std::unique_ptr<Pointcloud> open(const std::string& path) {
  auto database = std::make_unique<Pointcloud>(riegl::rdb::Context("", ""));
  database->open(path, OpenSettings());
  return database;
}

/// "what (details)" of the client's Error that `action` raises, with the directory taken out; "no error" without one.
inline std::string errorOf(const support::TempDir& directory, const std::function<void()>& action) {
  return containertest::errorOf<Error>(directory, action);
}

} // namespace rdbtest
