// SPDX-License-Identifier: BSD-3-Clause
// An output file of a program: complete under its name, or not there at all.
#include "apps/common/output_file.h"

#include "apps/common/target_path.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace apps {

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

OutputError::OutputError(const std::string& path, const std::string& expected, const std::string& found)
    : std::runtime_error("cannot write " + path + ": expected " + expected + ", found: " + found) {}

void requireReplaceable(const std::string& path) {
  if (path.empty()) {
    throw OutputError("\"\"", "the path of a file", "an empty text");
  }
  std::error_code absent;
  const fs::file_status status = fs::status(path, absent);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    throw OutputError(path, "a new or a regular file", kindOf(status.type()));
  }
}

OutputFile::OutputFile(const std::string& path) : givenPath(path) {
  requireReplaceable(path);
  std::error_code problem;
  finalPath = followLinks(path, problem);
  if (problem) {
    throw OutputError(path, "a path that can be followed", problem.message());
  }
  const bool replaces = ::access(finalPath.c_str(), F_OK) == 0;
  // Renaming would replace a file that is protected against writing.
  if (replaces && ::access(finalPath.c_str(), W_OK) != 0) {
    throw OutputError(path, "a file that may be written", systemText(errno));
  }
  create(replaces ? 0600 : 0666);
  if (replaces) {
    inheritFrom(finalPath);
  }
}

OutputFile::~OutputFile() {
  if (descriptor >= 0) {
    ::close(descriptor);
  }
  if (!temporaryPath.empty()) {
    ::unlink(temporaryPath.c_str());
  }
}

void OutputFile::create(mode_t permissions) {
  std::string name;
  do {
    name = temporaryName(finalPath);
    descriptor = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions);
  } while (descriptor < 0 && errno == EEXIST);
  if (descriptor < 0) {
    throw OutputError(givenPath, "a directory that takes a new file", systemText(errno));
  }
  temporaryPath = name;
}

void OutputFile::inheritFrom(const std::string& older) {
  struct stat status {};
  if (::stat(older.c_str(), &status) != 0) {
    return;
  }
  // Only the superuser may give files away. Without that right, or on a file system without owners, the file belongs
  // to the caller.
  [[maybe_unused]] const int owned = ::fchown(descriptor, status.st_uid, status.st_gid);
  ::fchmod(descriptor, status.st_mode & permissionBits);
}

void OutputFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      throw OutputError(givenPath, "room for the file", systemText(errno));
    }
  }
}

void OutputFile::putInPlace() {
  const bool stored = ::fsync(descriptor) == 0;
  const int reason = errno;
  const bool closed = ::close(std::exchange(descriptor, -1)) == 0;
  if (!stored || !closed || std::rename(temporaryPath.c_str(), finalPath.c_str()) != 0) {
    throw OutputError(givenPath, "room for the file", systemText(stored ? errno : reason));
  }
  temporaryPath.clear();
  flushFolderOf(finalPath);
}

} // namespace apps
