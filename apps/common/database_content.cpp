// SPDX-License-Identifier: BSD-3-Clause
// The content that a load expects of a database, by the name of its file.
#include "apps/common/database_content.h"

#include <filesystem>

namespace apps {

DatabaseContent contentByName(const std::string& path) {
  const std::string extension = std::filesystem::path(path).extension().string();
  return extension == ".pofx"   ? DatabaseContent::trajectory
         : extension == ".sodx" ? DatabaseContent::shots
                                : DatabaseContent::points;
}

} // namespace apps
