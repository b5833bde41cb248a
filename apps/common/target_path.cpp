// SPDX-License-Identifier: BSD-3-Clause
// The file that a path leads to, which need not exist yet.
#include "apps/common/target_path.h"

#include <filesystem>

namespace apps {

namespace fs = std::filesystem;

namespace {

/// The absolute path without links and dots.
fs::path canonicalTarget(const std::string& path) {
  std::error_code problem;
  const fs::path target = fs::absolute(followLinks(path, problem), problem);
  const fs::path canonical = fs::weakly_canonical(target, problem);
  return problem ? target.lexically_normal() : canonical;
}

} // namespace

std::string followLinks(const std::string& path, std::error_code& problem) {
  constexpr int mostLinks = 40; // as many as Linux follows
  problem.clear();
  fs::path current = path;
  for (int links = 0; links < mostLinks; ++links) {
    std::error_code absent;
    if (!fs::is_symlink(fs::symlink_status(current, absent))) {
      return current.string();
    }
    const fs::path target = fs::read_symlink(current, problem);
    if (problem) {
      return path;
    }
    current = target.is_absolute() ? target : current.parent_path() / target;
  }
  problem = std::make_error_code(std::errc::too_many_symbolic_link_levels);
  return path;
}

bool sameFile(const std::string& one, const std::string& other) {
  std::error_code absent;
  return one == other || fs::equivalent(one, other, absent) || canonicalTarget(one) == canonicalTarget(other);
}

} // namespace apps
