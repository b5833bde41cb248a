// SPDX-License-Identifier: BSD-3-Clause
// The named text items of an open database.
#pragma once

#include "platform/client/api.h"

#include <memory>
#include <string>
#include <vector>

namespace riegl::rdb {
namespace embedded {
class Database;
}
class Pointcloud;

namespace pointcloud {

/// The database's metadata. Owned by the Pointcloud; not copied.
/// \errors  riegl::rdb::Error while no database is open, and for an item that cannot be read
/// \threads as the Pointcloud: one thread at a time
class RDB_API MetaData {
 public:
  MetaData();
  MetaData(const MetaData&) = delete;
  MetaData& operator=(const MetaData&) = delete;
  ~MetaData();

  bool exists(const std::string& name) const;
  /// The item's text as it was written; `fallback` if there is no such item.
  std::string get(const std::string& name, const std::string& fallback = {}) const;
  /// The names of all items, sorted by their bytes.
  std::vector<std::string> list() const;

 private:
  friend class riegl::rdb::Pointcloud;
  std::shared_ptr<embedded::Database> database;
};

} // namespace pointcloud
} // namespace riegl::rdb
