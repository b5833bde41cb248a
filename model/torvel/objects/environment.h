// SPDX-License-Identifier: BSD-3-Clause
// Environment variables, and the directory of the running program.
#pragma once

#include "model/torvel/core/api.h"

#include <string>

namespace Torvel {

/// Sets an environment variable of the process. A name that the system refuses is ignored.
///
/// \param overwrite  false keeps an existing value
/// \errors  std::bad_alloc
/// \threads safe with getEnv and setEnv; no other code may read the environment meanwhile
TORVEL_API void setEnv(const char* name, const std::string& value, bool overwrite);

/// \return the value of an environment variable, empty where it isn't set
/// \errors  std::bad_alloc
/// \threads safe with getEnv and setEnv
TORVEL_API std::string getEnv(const char* name);

/// \return the directory of the running program, without a separator at its end; empty where it can't be
/// found out
/// \errors  std::bad_alloc
/// \threads safe
TORVEL_API std::string getExecutableDir();

} // namespace Torvel
