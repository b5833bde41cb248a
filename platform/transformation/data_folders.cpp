// SPDX-License-Identifier: BSD-3-Clause
// Splits PROJ_LIB into folders and looks for proj.db in them.
#include "platform/transformation/data_folders.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <system_error>

namespace Proj {

std::vector<std::string> dataFolders(const std::string& value) {
  std::error_code ignored;
  if (std::filesystem::is_directory(value, ignored)) {
    return {value}; // a program's own folder may have a colon in its name
  }
  std::vector<std::string> folders;
  std::istringstream pieces(value);
  for (std::string piece; std::getline(pieces, piece, ':');) {
    if (!piece.empty()) {
      folders.push_back(piece);
    }
  }
  return folders;
}

bool holdDatabase(const std::vector<std::string>& folders) {
  return std::any_of(folders.begin(), folders.end(), [](const std::string& folder) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::path(folder) / "proj.db", ignored);
  });
}

} // namespace Proj
