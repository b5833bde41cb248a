// SPDX-License-Identifier: BSD-3-Clause
// Runs the tool's command line inside a test, or any program outside it.
#pragma once

#include <string>
#include <vector>

namespace support {

/// Exit status and output of a run.
struct Run {
  int status = -1;
  std::string out;
  std::string err;
};

/// Runs the command line with these arguments, which do not include the name of the program.
Run runTool(const std::vector<std::string>& arguments);

/// Starts a program and waits for it.
/// \param folder  holds the two outputs until they are read
Run runProgram(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& folder);

} // namespace support
