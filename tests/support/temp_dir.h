// SPDX-License-Identifier: BSD-3-Clause
// A temporary directory, removed with its content when the test ends.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace support {

/// Owns a new directory inside the system's temporary directory.
class TempDir {
 public:
  TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "rdb2nimbra-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
      throw std::runtime_error("cannot make a temporary directory from " + pattern);
    }
    directory = pattern;
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
  }

  /// The path of `name` inside the directory, as text.
  std::string path(const std::string& name) const { return (directory / name).string(); }
  const std::filesystem::path& root() const { return directory; }

 private:
  std::filesystem::path directory;
};

} // namespace support
