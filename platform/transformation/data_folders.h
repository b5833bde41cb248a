// SPDX-License-Identifier: BSD-3-Clause
// Where PROJ's data are looked for.
#pragma once

#include <string>
#include <vector>

namespace Proj {

/// The folders that a value of PROJ_LIB names: the value itself if it is a folder, otherwise its pieces
/// between colons. Empty for an empty value.
std::vector<std::string> dataFolders(const std::string& value);

/// Whether one of the folders holds proj.db.
bool holdDatabase(const std::vector<std::string>& folders);

} // namespace Proj
