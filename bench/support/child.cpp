// SPDX-License-Identifier: BSD-3-Clause
// Starts processes and reads their memory.
#include "bench/support/child.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

extern char** environ;

namespace bench {

namespace {

std::string readAll(int descriptor) {
  std::string text;
  char piece[65536];
  for (ssize_t got = 0; (got = read(descriptor, piece, sizeof piece)) > 0;) {
    text.append(piece, static_cast<std::size_t>(got));
  }
  return text;
}

pid_t start(const std::vector<std::string>& command, int outputEnd) {
  std::vector<char*> arguments;
  for (const std::string& argument : command) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, outputEnd, STDOUT_FILENO);
  pid_t child = 0;
  const int failure = posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) {
    throw std::system_error(failure, std::generic_category(), "starting " + command.front());
  }
  return child;
}

} // namespace

ProcessMemory processMemory() {
  ProcessMemory memory;
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    unsigned long long kilobytes = 0;
    if (std::sscanf(line.c_str(), "VmRSS: %llu kB", &kilobytes) == 1) {
      memory.residentBytes = kilobytes * 1024;
    } else if (std::sscanf(line.c_str(), "VmHWM: %llu kB", &kilobytes) == 1) {
      memory.peakBytes = kilobytes * 1024;
    }
  }
  return memory;
}

std::string thisProgram() {
  return std::filesystem::read_symlink("/proc/self/exe").string();
}

std::string output(const std::vector<std::string>& command) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) {
    throw std::system_error(errno, std::generic_category(), "making a pipe");
  }
  const pid_t child = start(command, ends[1]);
  close(ends[1]);
  std::string text = readAll(ends[0]);
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (status != 0) {
    throw std::runtime_error(command.front() + ": expected status 0, found " +
                             (WIFEXITED(status) ? "status " + std::to_string(WEXITSTATUS(status))
                                                : "signal " + std::to_string(WTERMSIG(status))));
  }
  return text;
}

std::vector<double> numbers(const std::vector<std::string>& command) {
  std::istringstream text(output(command));
  std::vector<double> values;
  for (double value = 0; text >> value;) {
    values.push_back(value);
  }
  return values;
}

} // namespace bench
