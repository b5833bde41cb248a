// SPDX-License-Identifier: BSD-3-Clause
// A file that takes its name when it is complete. Internal: the container's library and the programs compile it each.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <system_error>

namespace container {

/// Why a file cannot be written. Callers report it as an error of their own, which names the file.
struct ReplacementError : std::runtime_error {
  ReplacementError(const std::string& expectedState, const std::string& foundState);
  std::string expected, found;
};

/// The end of a chain of symbolic links, which need not exist.
///
/// \param problem  receives why a link cannot be followed (a circle of links, say), cleared otherwise
/// \return         the path itself where it is not a symbolic link
std::string followLinks(const std::string& path, std::error_code& problem);

/// Checks that `path` names a regular file or nothing yet; creates and opens nothing, so a pipe never blocks.
///
/// \errors ReplacementError for a directory, a device, a pipe, a socket, an empty path, a zero byte in it
void requireReplaceable(const std::string& path);

/// A temporary file `NAME.PID-NUMBER.partial` in the folder of its final place, where it is renamed to when it is
/// complete. Until then the final name is untouched, whatever happens to the program. Symbolic links are followed. A
/// file that is replaced passes on its permissions, and its owner and group where the system allows it.
///
/// \threads one thread per object
class ReplacingFile {
 public:
  /// Creates the temporary file, empty.
  ///
  /// \param path  the final place: a new file, or a regular file that may be written
  /// \errors      ReplacementError
  explicit ReplacingFile(const std::string& path);
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;
  /// Removes the temporary file unless it has been put in place.
  ~ReplacingFile();

  /// Where the content is written to; empty once the file is in place. The file is also open in this object.
  const std::string& path() const { return temporaryPath; }
  /// Appends bytes. They go to the system at once, so write large pieces.
  /// \errors ReplacementError, for a full disk among others
  void write(std::string_view bytes);

  /// Forces the content to disk and gives the file its name in one step, in place of an older file.
  ///
  /// \errors ReplacementError where something could not be written or renamed; an older file is then unchanged
  void putInPlace();

 private:
  void create(mode_t permissions);

  std::string finalPath, temporaryPath;
  int descriptor = -1;
};

} // namespace container
