// SPDX-License-Identifier: BSD-3-Clause
// An output file of a program: complete under its name, or not there at all.
#pragma once

#include "container/write/replacing_file.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace apps {

/// A file that cannot be written. The text is "cannot write PATH: expected ..., found ...".
class OutputError : public std::runtime_error {
 public:
  OutputError(const std::string& path, const std::string& expected, const std::string& found);
};

/// Checks that `path` names a regular file or nothing yet; creates and opens nothing, so a pipe never blocks.
///
/// \errors OutputError for a directory, a device, a pipe, a socket, an empty path
void requireReplaceable(const std::string& path);

/// Writes a temporary file and renames it when it is complete, as container::ReplacingFile specifies.
///
/// \threads one thread per object
class OutputFile {
 public:
  /// Creates the temporary file.
  ///
  /// \param path  the output: a new file, or a regular file that may be written
  /// \errors      OutputError
  explicit OutputFile(const std::string& path);

  /// Appends bytes. They go to the system at once, so write large pieces.
  /// \errors OutputError, for a full disk among others
  void write(std::string_view bytes);

  /// Closes the file with its content on the disk and gives it its name in one step, in place of an older file.
  ///
  /// \errors OutputError where something could not be written or renamed; an older file is then unchanged
  void putInPlace();

 private:
  std::string givenPath;
  container::ReplacingFile file;
};

} // namespace apps
