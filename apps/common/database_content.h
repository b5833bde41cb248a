// SPDX-License-Identifier: BSD-3-Clause
// The content that a load expects of a database, by the name of its file.
#pragma once

#include <string>

namespace apps {

enum class DatabaseContent { points, shots, trajectory };

/// \return trajectory for the extension `.pofx`, shots for `.sodx`, both to the letter, points for any other name
DatabaseContent contentByName(const std::string& path);

} // namespace apps
