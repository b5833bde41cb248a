// SPDX-License-Identifier: BSD-3-Clause
// The catalogue of an open database's point attributes.
#pragma once

#include "platform/client/api.h"
#include "platform/client/point_attribute.h"

#include <memory>
#include <string>
#include <vector>

namespace riegl::rdb {
namespace embedded {
class Database;
}
class Pointcloud;

namespace pointcloud {

/// Which attributes the database has. Owned by the Pointcloud; not copied.
/// \errors  riegl::rdb::Error from every operation while no database is open
/// \threads as the Pointcloud: one thread at a time
class RDB_API PointAttributes {
 public:
  PointAttributes();
  PointAttributes(const PointAttributes&) = delete;
  PointAttributes& operator=(const PointAttributes&) = delete;
  ~PointAttributes();

  bool exists(const std::string& name) const;
  /// The description of one attribute; an unknown name is an Error.
  PointAttribute get(const std::string& name) const;
  /// The names of all attributes, in the order in which the file holds them.
  std::vector<std::string> list() const;

 private:
  friend class riegl::rdb::Pointcloud;
  std::shared_ptr<embedded::Database> database;
};

} // namespace pointcloud
} // namespace riegl::rdb
