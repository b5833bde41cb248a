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

/// The folder of the shared library or program that holds the code at `address`, with its symbolic links
/// resolved. Empty where the system has no answer.
std::string folderOfCode(const void* address);

/// The folders that an installation of PROJ has its data in, seen from the folder of PROJ's library:
/// `share/proj` beside that folder, and beside the folder above it ("lib/x86_64-linux-gnu").
std::vector<std::string> installedDataFolders(const std::string& libraryFolder);

} // namespace Proj
