// SPDX-License-Identifier: BSD-3-Clause
// A file that is removed again unless it is put in place. Internal to the container.
#pragma once

#include "container/write/replacing_file.h"

#include <string>

namespace container {

/// An empty file with a name of its own, beside the file that it will replace.
class TemporaryFile {
 public:
  /// \param path  the final place of the file; symbolic links are followed
  /// \errors Error if `path` cannot be replaced, no file can be made in its directory, or a log of SQLite that belongs to
  ///         an older file lies beside it
  explicit TemporaryFile(const std::string& path);

  /// Where the file is until then; empty once it is in place.
  const std::string& path() const { return file.path(); }
  /// Forces the content to disk and renames the file to its final name, atomically replacing the old file, whose
  /// permissions it takes, and whose owner and group where the system allows it.
  /// \errors Error if the system refuses; the old file is untouched then
  void putInPlace();

 private:
  std::string shownPath;
  ReplacingFile file;
};

} // namespace container
