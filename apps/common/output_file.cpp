// SPDX-License-Identifier: BSD-3-Clause
// An output file of a program: complete under its name, or not there at all.
#include "apps/common/output_file.h"

namespace apps {

namespace {

/// Calls `work`; a refusal becomes an OutputError that names the file.
template <class Work>
auto reported(const std::string& path, Work&& work) {
  try {
    return work();
  } catch (const container::ReplacementError& refusal) {
    throw OutputError(path.empty() ? "\"\"" : path, refusal.expected, refusal.found);
  }
}

} // namespace

OutputError::OutputError(const std::string& path, const std::string& expected, const std::string& found)
    : std::runtime_error("cannot write " + path + ": expected " + expected + ", found: " + found) {}

void requireReplaceable(const std::string& path) {
  reported(path, [&] { container::requireReplaceable(path); });
}

OutputFile::OutputFile(const std::string& path)
    : givenPath(path), file(reported(path, [&] { return container::ReplacingFile(path); })) {}

void OutputFile::write(std::string_view bytes) {
  reported(givenPath, [&] { file.write(bytes); });
}

void OutputFile::putInPlace() {
  reported(givenPath, [&] { file.putInPlace(); });
}

} // namespace apps
