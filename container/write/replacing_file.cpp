// SPDX-License-Identifier: BSD-3-Clause
// A file that takes its name when it is complete.
#include "container/write/replacing_file.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace container {

namespace fs = std::filesystem;

namespace {

constexpr mode_t permissionBits = 0777;

std::string systemText(int number) {
  return std::generic_category().message(number);
}

const char* kindOf(fs::file_type type) {
  switch (type) {
  case fs::file_type::directory:
    return "a directory";
  case fs::file_type::fifo:
    return "a pipe";
  case fs::file_type::socket:
    return "a socket";
  case fs::file_type::character:
  case fs::file_type::block:
    return "a device";
  default:
    return "a special file";
  }
}

/// A name that no other process and no other object of this one uses, short enough for every file system.
std::string temporaryName(const std::string& finalPath) {
  static std::atomic<unsigned> made = 0;
  constexpr std::size_t longestStem = 200;
  const fs::path path = finalPath;
  const std::string name = path.filename().string().substr(0, longestStem) + "." +
                           std::to_string(::getpid()) + "-" + std::to_string(++made) + ".partial";
  return (path.parent_path() / name).string();
}

/// Passes on the permissions of the file that is about to be replaced. Only the superuser may give files away. Without
/// that right, or on a file system without owners, the new file belongs to the caller.
void inherit(int descriptor, const std::string& older) {
  struct stat status {};
  if (::stat(older.c_str(), &status) != 0) {
    return;
  }
  [[maybe_unused]] const int owned = ::fchown(descriptor, status.st_uid, status.st_gid);
  ::fchmod(descriptor, status.st_mode & permissionBits);
}

/// Makes a rename survive a loss of power. The file has its name by now, so a failure changes nothing.
void flushFolderOf(const std::string& path) {
  const std::string folder = fs::path(path).parent_path().string();
  const int opened = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (opened >= 0) {
    ::fsync(opened);
    ::close(opened);
  }
}

} // namespace

ReplacementError::ReplacementError(const std::string& expectedState, const std::string& foundState)
    : std::runtime_error("expected " + expectedState + ", found: " + foundState), expected(expectedState),
      found(foundState) {}

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

void requireReplaceable(const std::string& path) {
  if (path.empty()) {
    throw ReplacementError("the path of a file", "an empty text");
  }
  if (path.find('\0') != std::string::npos) {
    throw ReplacementError("the path of a file", "a zero byte in it");
  }
  std::error_code absent;
  const fs::file_status status = fs::status(path, absent);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    throw ReplacementError("a new or a regular file", kindOf(status.type()));
  }
}

ReplacingFile::ReplacingFile(const std::string& path) {
  requireReplaceable(path);
  std::error_code problem;
  finalPath = followLinks(path, problem);
  if (problem) {
    throw ReplacementError("a path that can be followed", problem.message());
  }
  const bool replaces = ::access(finalPath.c_str(), F_OK) == 0;
  // Renaming would replace a file that is protected against writing.
  if (replaces && ::access(finalPath.c_str(), W_OK) != 0) {
    throw ReplacementError("a file that may be written", systemText(errno));
  }
  create(replaces ? 0600 : 0666);
}

ReplacingFile::~ReplacingFile() {
  if (descriptor >= 0) {
    ::close(descriptor);
  }
  if (!temporaryPath.empty()) {
    ::unlink(temporaryPath.c_str());
  }
}

void ReplacingFile::create(mode_t permissions) {
  std::string name;
  do {
    name = temporaryName(finalPath);
    descriptor = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions);
  } while (descriptor < 0 && errno == EEXIST);
  if (descriptor < 0) {
    throw ReplacementError("a directory that takes a new file", systemText(errno));
  }
  temporaryPath = name;
}

void ReplacingFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      throw ReplacementError("room for the file", systemText(errno));
    }
  }
}

void ReplacingFile::putInPlace() {
  inherit(descriptor, finalPath);
  const bool stored = ::fsync(descriptor) == 0;
  const int reason = errno;
  const bool closed = ::close(std::exchange(descriptor, -1)) == 0;
  if (!stored || !closed || std::rename(temporaryPath.c_str(), finalPath.c_str()) != 0) {
    throw ReplacementError("room for the file", systemText(stored ? errno : reason));
  }
  temporaryPath.clear();
  flushFolderOf(finalPath);
}

} // namespace container
