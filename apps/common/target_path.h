// SPDX-License-Identifier: BSD-3-Clause
// The file that a path leads to, which need not exist yet.
#pragma once

#include <string>

namespace apps {

/// Whether two paths lead to the same file, however they are written and whether it exists or not.
bool sameFile(const std::string& one, const std::string& other);

} // namespace apps
