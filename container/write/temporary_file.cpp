// SPDX-License-Identifier: BSD-3-Clause
// A file that is removed again unless it is put in place.
#include "container/write/temporary_file.h"

#include "container/format/error.h"

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

} // namespace

TemporaryFile::TemporaryFile(const std::string& path)
    : shownPath(path), file(reported(path, [&] { return ReplacingFile(path); })) {}

void TemporaryFile::putInPlace() {
  reported(shownPath, [&] { file.putInPlace(); });
}

} // namespace container
