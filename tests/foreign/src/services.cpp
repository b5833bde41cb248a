// SPDX-License-Identifier: BSD-3-Clause
// Console and environment.
#include "model/torvel/objects/console.h"
#include "model/torvel/objects/environment.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <mutex>

namespace Torvel {

namespace {

std::mutex& environmentMutex() {
  static std::mutex mutex;
  return mutex;
}

} // namespace

Console::Console() = default;

Console::~Console() {
  line_ += '\n';
  std::fwrite(line_.data(), 1, line_.size(), stderr); // one call, so that lines of threads do not mix
}

Console& Console::operator<<(const char* text) {
  line_ += text;
  return *this;
}

void setEnv(const char* name, const std::string& value, bool overwrite) {
  const std::scoped_lock lock(environmentMutex());
  ::setenv(name, value.c_str(), overwrite ? 1 : 0);
}

std::string getExecutableDir() {
  std::error_code failure;
  return std::filesystem::read_symlink("/proc/self/exe", failure).parent_path().string();
}

std::string getEnv(const char* name) {
  const std::scoped_lock lock(environmentMutex());
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

} // namespace Torvel
