// SPDX-License-Identifier: BSD-3-Clause
// The catalogue of an open database's point attributes.
#include "platform/client/point_attributes.h"

#include "platform/client/database.h"
#include "platform/client/element_type.h"

namespace riegl::rdb::pointcloud {
namespace {

PointAttribute describe(const container::Attribute& attribute) {
  PointAttribute description;
  description.name = attribute.name;
  description.title = attribute.title;
  description.description = attribute.description;
  description.unit = attribute.unit;
  description.length = attribute.length;
  description.resolution = attribute.scale;
  description.scale = attribute.scale;
  description.offset = attribute.offset;
  description.storedType = embedded::dataTypeOf(attribute.type);
  return description;
}

} // namespace

PointAttributes::PointAttributes() = default;

PointAttributes::~PointAttributes() = default;

bool PointAttributes::exists(const std::string& name) const {
  return requireOpen(database).find(name) != nullptr;
}

PointAttribute PointAttributes::get(const std::string& name) const {
  return embedded::translated([&] { return describe(requireOpen(database).require(name)); });
}

std::vector<std::string> PointAttributes::list() const {
  const embedded::Database& opened = requireOpen(database);
  std::vector<std::string> names;
  for (std::size_t i = 0; i < opened.attributeCount(); ++i) {
    names.push_back(opened.attribute(i).name);
  }
  return names;
}

} // namespace riegl::rdb::pointcloud
