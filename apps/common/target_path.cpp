// SPDX-License-Identifier: BSD-3-Clause
// The file that a path leads to, which need not exist yet.
#include "apps/common/target_path.h"

#include "container/write/replacing_file.h"

#include <filesystem>
#include <system_error>

namespace apps {

namespace fs = std::filesystem;

namespace {

/// The absolute path without links and dots.
fs::path canonicalTarget(const std::string& path) {
  std::error_code problem;
  const fs::path target = fs::absolute(container::followLinks(path, problem), problem);
  const fs::path canonical = fs::weakly_canonical(target, problem);
  return problem ? target.lexically_normal() : canonical;
}

} // namespace

bool sameFile(const std::string& one, const std::string& other) {
  std::error_code absent;
  return one == other || fs::equivalent(one, other, absent) || canonicalTarget(one) == canonicalTarget(other);
}

} // namespace apps
