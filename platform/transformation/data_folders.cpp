// SPDX-License-Identifier: BSD-3-Clause
// Splits PROJ_LIB into folders, looks for proj.db in folders, and finds the folder of loaded code.
#include "platform/transformation/data_folders.h"

#include <algorithm>
#include <dlfcn.h>
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

std::string folderOfCode(const void* address) {
  Dl_info found{};
  if (dladdr(address, &found) == 0 || found.dli_fname == nullptr) {
    return {};
  }
  std::error_code failure;
  const std::filesystem::path file = std::filesystem::canonical(found.dli_fname, failure);
  return failure ? std::string() : file.parent_path().string();
}

std::vector<std::string> installedDataFolders(const std::string& libraryFolder) {
  if (libraryFolder.empty()) {
    return {};
  }
  const std::filesystem::path above = std::filesystem::path(libraryFolder).parent_path();
  return {(above / "share/proj").string(), (above.parent_path() / "share/proj").string()};
}

} // namespace Proj
