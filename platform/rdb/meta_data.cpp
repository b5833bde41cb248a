// The named text items of an open database.
// Partner: meta_data.h
#include "platform/rdb/meta_data.h"

#include "platform/rdb/database.h"

namespace riegl::rdb::pointcloud {

MetaData::MetaData() = default;

MetaData::~MetaData() = default;

bool MetaData::exists(const std::string& name) const {
  return requireOpen(database).item(name).has_value();
}

std::string MetaData::get(const std::string& name, const std::string& fallback) const {
  return requireOpen(database).item(name).value_or(fallback);
}

std::vector<std::string> MetaData::list() const {
  return requireOpen(database).itemNames();
}

} // namespace riegl::rdb::pointcloud
