// SPDX-License-Identifier: BSD-3-Clause
// The process's surroundings: environment variables and the place of the running program.
#pragma once

#include "model/torvel/core/api.h"

#include <string>

namespace Torvel {

/// Sets an environment variable of the process. With `overwrite` false an existing value stays. A name that
/// the system refuses is ignored. \threads concerns all threads: nobody may read the environment meanwhile
/// except through this library
TORVEL_API void setEnv(const char* name, const std::string& value, bool overwrite);

/// The value of an environment variable, empty where it isn't set. Calls of setEnv and getEnv exclude each other.
TORVEL_API std::string getEnv(const char* name);

/// The directory of the running program, without a separator at its end; empty where the system can't tell.
TORVEL_API std::string getExecutableDir();

} // namespace Torvel
