// SPDX-License-Identifier: BSD-3-Clause
// PROJ's installed database, and modified copies of it.
#pragma once

#include "tests/support/changed_variable.h"

#include <filesystem>
#include <proj.h>
#include <sqlite3.h>
#include <stdexcept>
#include <string>

namespace support {

/// The proj.db that PROJ itself finds where no variable leads it elsewhere.
inline std::filesystem::path installedProjDatabase() {
  const ChangedVariable library("PROJ_LIB", std::nullopt), data("PROJ_DATA", std::nullopt);
  PJ_CONTEXT* const context = proj_context_create();
  const char* const found = proj_context_get_database_path(context);
  const std::filesystem::path path = found == nullptr ? "" : found;
  proj_context_destroy(context);
  if (path.empty()) {
    throw std::runtime_error("PROJ finds no proj.db of its own (package proj-data)");
  }
  return path;
}

/// Puts a proj.db into `folder` in which the meridian of UTM zone 33 lies at `degrees` instead of 15.
inline void putProjDatabase(const std::filesystem::path& folder, int degrees) {
  const std::filesystem::path file = folder / "proj.db";
  std::filesystem::copy_file(installedProjDatabase(), file);
  std::filesystem::permissions(file, std::filesystem::perms::owner_write, std::filesystem::perm_options::add);
  sqlite3* database = nullptr;
  sqlite3_open(file.c_str(), &database);
  const std::string statement = "UPDATE conversion_table SET param2_value = " + std::to_string(degrees) +
                                " WHERE auth_name = 'EPSG' AND code = '16033'";
  const bool written = sqlite3_exec(database, statement.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK &&
                       sqlite3_changes(database) == 1;
  sqlite3_close(database);
  if (!written) {
    throw std::runtime_error("cannot move the meridian in " + file.string());
  }
}

/// Zone 33 with its meridian at `degrees`, as a text that needs no database.
inline std::string zone33At(int degrees) {
  return "+proj=tmerc +lat_0=0 +lon_0=" + std::to_string(degrees) +
         " +k=0.9996 +x_0=500000 +y_0=0 +datum=WGS84 +units=m";
}

} // namespace support
