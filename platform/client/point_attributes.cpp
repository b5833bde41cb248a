// SPDX-License-Identifier: BSD-3-Clause
// The catalogue of an open database's point attributes.
#include "platform/client/point_attributes.h"

#include "container/read/database.h"

namespace riegl::rdb::pointcloud {

PointAttributes::PointAttributes() = default;

PointAttributes::~PointAttributes() = default;

bool PointAttributes::exists(const std::string& name) const {
  return requireOpen(database).columnNamed(name).has_value();
}

PointAttribute PointAttributes::get(const std::string& name) const {
  return requireOpen(database).requireColumn(name).attribute;
}

std::vector<std::string> PointAttributes::list() const {
  std::vector<std::string> names;
  for (const embedded::Column& column : requireOpen(database).columns()) {
    names.push_back(column.attribute.name);
  }
  return names;
}

} // namespace riegl::rdb::pointcloud
