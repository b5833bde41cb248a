// SPDX-License-Identifier: BSD-3-Clause
// Guards environment variables with a lock, and finds the directory of the running program.
#include "model/torvel/objects/environment.h"

#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <system_error>

namespace Torvel {

namespace {

// Two loads in two threads both write PROJ_LIB; setenv and getenv are not thread-safe.
std::mutex& environmentMutex() {
  static std::mutex* mutex = new std::mutex;
  return *mutex;
}

} // namespace

void setEnv(const char* name, const std::string& value, bool overwrite) {
  const std::lock_guard lock(environmentMutex());
  const char* const present = std::getenv(name);
  if (present != nullptr && (!overwrite || value == present)) {
    return;
  }
  setenv(name, value.c_str(), 1);
}

std::string getEnv(const char* name) {
  const std::lock_guard lock(environmentMutex());
  const char* const present = std::getenv(name);
  return present == nullptr ? std::string() : std::string(present);
}

std::string getExecutableDir() {
  std::error_code failure;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failure);
  return failure ? std::string() : program.parent_path().string();
}

} // namespace Torvel
