// SPDX-License-Identifier: BSD-3-Clause
// Options of opening a database.
#include "platform/client/open_settings.h"

namespace riegl::rdb::pointcloud {

OpenSettings::OpenSettings() = default;

OpenSettings::OpenSettings(const OpenSettings&) = default;

OpenSettings& OpenSettings::operator=(const OpenSettings&) = default;

OpenSettings::~OpenSettings() = default;

} // namespace riegl::rdb::pointcloud
