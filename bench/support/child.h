// SPDX-License-Identifier: BSD-3-Clause
// This program once more, as a process of its own: for what only a fresh process can tell.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

/// Memory of this process, from the system's books.
struct ProcessMemory {
  std::uint64_t residentBytes = 0;
  std::uint64_t peakBytes = 0;
};
ProcessMemory processMemory();

/// Path of the running program.
std::string thisProgram();

/// Runs a program, its standard output going into a text. \errors std::runtime_error unless it ends with status 0
std::string output(const std::vector<std::string>& command);

/// The numbers that a program prints, parted by white space.
std::vector<double> numbers(const std::vector<std::string>& command);

} // namespace bench
