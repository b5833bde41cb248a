// SPDX-License-Identifier: BSD-3-Clause
// Environment of the process. The operations exclude each other.
#pragma once

#include "model/torvel/core/api.h"

#include <string>

namespace Torvel {

TORVEL_API void setEnv(const char* name, const std::string& value, bool overwrite);
TORVEL_API std::string getExecutableDir();
TORVEL_API std::string getEnv(const char* name);

} // namespace Torvel
