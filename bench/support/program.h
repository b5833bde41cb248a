// SPDX-License-Identifier: BSD-3-Clause
// The main function of a benchmark that prints a table of its own.
#pragma once

#include <cstdio>
#include <exception>

namespace bench {

/// Runs a program; a failure is one line on standard error and status 1.
inline int runProgram(const char* name, int (*run)(int, char**), int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s: %s\n", name, failure.what());
    return 1;
  }
}

} // namespace bench
