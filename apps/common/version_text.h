// SPDX-License-Identifier: BSD-3-Clause
// What a program prints for --version.
#pragma once

#include <string>

namespace apps {

/// The name and the version of the project, such as "rdbtool 1.0.0".
std::string versionText(const std::string& program);

} // namespace apps
