// SPDX-License-Identifier: BSD-3-Clause
// The named text items of an open database.
#include "platform/client/meta_data.h"

#include "platform/client/database.h"

namespace riegl::rdb::pointcloud {

MetaData::MetaData() = default;

MetaData::~MetaData() = default;

bool MetaData::exists(const std::string& name) const {
  return embedded::translated([&] { return requireOpen(database).item(name).has_value(); });
}

std::string MetaData::get(const std::string& name, const std::string& fallback) const {
  return embedded::translated([&] { return requireOpen(database).item(name).value_or(fallback); });
}

std::vector<std::string> MetaData::list() const {
  return embedded::translated([&] { return requireOpen(database).itemNames(); });
}

} // namespace riegl::rdb::pointcloud
