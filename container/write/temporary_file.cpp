// SPDX-License-Identifier: BSD-3-Clause
// A file that is removed again unless it is put in place.
#include "container/write/temporary_file.h"

#include "container/format/error.h"

#include <filesystem>
#include <system_error>

namespace container {
namespace {

/// Calls `work`; a refusal becomes an Error that names the file, up to a zero byte in the path.
template <class Work>
auto reported(const std::string& path, Work&& work) {
  try {
    return work();
  } catch (const ReplacementError& refusal) {
    throw Error(ErrorKind::cannotWrite, "cannot write the database",
                (path.empty() ? "\"\"" : path.substr(0, path.find('\0'))) + ": " + refusal.what());
  }
}

/// SQLite applies a log of an older file to whatever has the name of that file.
void requireNoLogBeside(const std::string& path) {
  std::error_code problem;
  const std::string place = followLinks(path, problem);
  for (const char* const suffix : {"-wal", "-journal"}) {
    const std::string log = place + suffix;
    std::error_code absent;
    if (const auto bytes = std::filesystem::file_size(log, absent); !absent && bytes > 0) {
      throw ReplacementError("no log of an unfinished change beside it",
                             log + "; open the older file with a program "
                                   "that may write to it, or remove the log");
    }
  }
}

} // namespace

TemporaryFile::TemporaryFile(const std::string& path)
    : shownPath(path), file(reported(path, [&] { return ReplacingFile(path); })) {
  reported(path, [&] { requireNoLogBeside(path); });
}

void TemporaryFile::putInPlace() {
  reported(shownPath, [&] {
    requireNoLogBeside(shownPath);
    file.putInPlace();
  });
}

} // namespace container
