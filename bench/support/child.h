// SPDX-License-Identifier: BSD-3-Clause
// Starts this program again as a process of its own, for measurements that need a fresh process.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/// Memory of this process, from /proc.
struct ProcessMemory {
  std::uint64_t residentBytes = 0;
  std::uint64_t peakBytes = 0;
};
ProcessMemory processMemory();

/// Path of the running program.
std::string thisProgram();

/// Runs a program and returns its standard output. \errors std::runtime_error unless it ends with status 0
std::string output(const std::vector<std::string>& command);

/// The numbers that a program prints, separated by white space.
std::vector<double> numbers(const std::vector<std::string>& command);

} // namespace bench
