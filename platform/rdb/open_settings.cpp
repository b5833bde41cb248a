// Options of opening a database.
// Partner: open_settings.h
#include "platform/rdb/open_settings.h"

namespace riegl::rdb::pointcloud {

OpenSettings::OpenSettings() = default;

OpenSettings::OpenSettings(const OpenSettings&) = default;

OpenSettings& OpenSettings::operator=(const OpenSettings&) = default;

OpenSettings::~OpenSettings() = default;

} // namespace riegl::rdb::pointcloud
