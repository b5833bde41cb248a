// SPDX-License-Identifier: BSD-3-Clause
// A file that is removed again unless it is put in place.
#include "container/write/temporary_file.h"

#include "container/format/error.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace container {
namespace {

namespace fs = std::filesystem;

constexpr mode_t permissionBits = 0777;

[[noreturn]] void refuse(const std::string& path, const std::string& expected, const std::string& found) {
  throw Error(ErrorKind::cannotWrite, "cannot write the database",
              path + ": expected " + expected + ", found: " + found);
}

std::string systemText(int number) {
  return std::generic_category().message(number);
}

// The end of a chain of symbolic links, which need not exist yet.
std::string followLinks(const std::string& path) {
  constexpr int mostLinks = 40;
  fs::path current = path;
  std::error_code status;
  for (int links = 0; links < mostLinks; ++links) {
    if (!fs::is_symlink(fs::symlink_status(current, status))) {
      return current.string();
    }
    const fs::path target = fs::read_symlink(current, status);
    if (status) {
      refuse(path, "a readable symbolic link", status.message());
    }
    current = target.is_absolute() ? target : current.parent_path() / target;
  }
  refuse(path, "a file", "a circle of symbolic links");
}

void requireReplaceable(const std::string& path) {
  if (path.empty() || path.find('\0') != std::string::npos) {
    refuse("\"" + path + "\"", "the path of a file", "no path");
  }
  std::error_code ignored;
  const fs::file_status status = fs::status(path, ignored);
  if (fs::is_directory(status)) {
    refuse(path, "a new or a regular file", "a directory");
  }
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    refuse(path, "a new or a regular file", "a special file");
  }
}

bool forceToDisk(const std::string& path, int flags) {
  const int file = ::open(path.c_str(), flags | O_CLOEXEC);
  if (file < 0) {
    return false;
  }
  const bool done = ::fsync(file) == 0;
  return ::close(file) == 0 && done;
}

// Passes on owner, group and permissions of a file that is about to be replaced. Only the superuser may give files away;
// without that right the new file belongs to the caller.
void inherit(const std::string& path, const std::string& older) {
  struct stat status {};
  if (::stat(older.c_str(), &status) == 0) {
    [[maybe_unused]] const int owned = ::chown(path.c_str(), status.st_uid, status.st_gid);
    ::chmod(path.c_str(), status.st_mode & permissionBits);
  }
}

} // namespace

TemporaryFile::TemporaryFile(const std::string& path) : finalPath(path) {
  requireReplaceable(path);
  finalPath = followLinks(path);
  static std::atomic<unsigned> made = 0;
  const bool replaces = ::access(finalPath.c_str(), F_OK) == 0;
  int file = -1;
  do {
    temporaryPath = finalPath + "." + std::to_string(::getpid()) + "-" + std::to_string(++made) + ".partial";
    file = ::open(temporaryPath.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, replaces ? 0600 : 0666);
  } while (file < 0 && errno == EEXIST);
  if (file < 0) {
    refuse(path, "a directory that takes a new file", systemText(errno));
  }
  ::close(file);
}

TemporaryFile::~TemporaryFile() {
  if (!temporaryPath.empty()) {
    ::unlink(temporaryPath.c_str());
  }
}

void TemporaryFile::putInPlace() {
  const bool isOnDisk = forceToDisk(temporaryPath, O_RDWR);
  if (isOnDisk) {
    inherit(temporaryPath, finalPath);
  }
  if (!isOnDisk || std::rename(temporaryPath.c_str(), finalPath.c_str()) != 0) {
    refuse(finalPath, "room for the finished file", systemText(errno));
  }
  temporaryPath.clear();
  const std::string directory = fs::path(finalPath).parent_path().string();
  // The file has its name by now; failing to force the directory to disk does not undo that.
  forceToDisk(directory.empty() ? "." : directory, O_RDONLY | O_DIRECTORY);
}

} // namespace container
