// SPDX-License-Identifier: BSD-3-Clause
// An output file of a program: complete under its name, or not there at all.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/types.h>

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

/// Writes a temporary file `NAME.PID-NUMBER.partial` in the folder of the output and renames it when it is complete.
/// Until then the output's own name is untouched, whatever happens to the program. Symbolic links are followed. A
/// file that is replaced passes on its permissions, and its owner and group where the system allows it.
///
/// \threads one thread per object
class OutputFile {
 public:
  /// Creates the temporary file.
  ///
  /// \param path  the output: a new file, or a regular file that may be written
  /// \errors      OutputError
  explicit OutputFile(const std::string& path);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  /// Removes the temporary file unless it has been put in place.
  ~OutputFile();

  /// Appends bytes. They go to the system at once, so write large pieces.
  /// \errors OutputError, for a full disk among others
  void write(std::string_view bytes);

  /// Closes the file with its content on the disk and gives it its name in one step, in place of an older file.
  ///
  /// \errors OutputError where something could not be written or renamed; an older file is then unchanged
  void putInPlace();

 private:
  void create(mode_t permissions);
  void inheritFrom(const std::string& older);

  std::string givenPath, finalPath, temporaryPath;
  int descriptor = -1;
};

} // namespace apps
