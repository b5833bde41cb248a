// SPDX-License-Identifier: BSD-3-Clause
// A file that is removed again unless it is put in place. Internal to this room.
#pragma once

#include <string>

namespace riegl::rdb::embedded {

/// Makes an empty file of its own name beside the file it is to replace.
class TemporaryFile {
 public:
  /// \param path  where the file is to go in the end; symbolic links are followed
  /// \errors Error if `path` cannot be replaced, or no file can be made in its directory
  explicit TemporaryFile(const std::string& path);
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  /// Where the file is meanwhile; empty once it is in place.
  const std::string& path() const { return temporaryPath; }
  /// Forces the content to the disk and gives the file its final name, at once and in the place of what had it.
  /// \errors Error if the system refuses; what had the name before is untouched then
  void putInPlace();

 private:
  std::string finalPath, temporaryPath;
};

} // namespace riegl::rdb::embedded
