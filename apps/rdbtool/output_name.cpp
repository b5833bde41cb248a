// SPDX-License-Identifier: BSD-3-Clause
// A warning for output names whose extension does not match the content.
#include "apps/rdbtool/output_name.h"

#include "apps/common/printable_text.h"

#include <filesystem>

namespace rdbtool {

namespace {

const char* nameOf(DatabaseContent content) {
  return content == DatabaseContent::trajectory ? "a trajectory"
         : content == DatabaseContent::shots    ? "shots"
                                                : "points";
}

const char* extensionOf(DatabaseContent content) {
  return content == DatabaseContent::trajectory ? ".pofx"
         : content == DatabaseContent::shots    ? ".sodx"
                                                : ".rdbx";
}

} // namespace

DatabaseContent contentByName(const std::string& path) {
  const std::string extension = std::filesystem::path(path).extension().string();
  return extension == ".pofx"   ? DatabaseContent::trajectory
         : extension == ".sodx" ? DatabaseContent::shots
                                : DatabaseContent::points;
}

void noteOutputName(DatabaseContent content, const std::string& path, std::ostream& notes) {
  const DatabaseContent taken = contentByName(path);
  if (taken != content) {
    apps::printLine(notes, path + ": expected the extension " + extensionOf(content) + " for " +
                               nameOf(content) + ", found a name that a load reads as " + nameOf(taken));
  }
}

} // namespace rdbtool
