// SPDX-License-Identifier: BSD-3-Clause
// Runs the tool's command line inside a test, or any program outside it.
#pragma once

#include <string>
#include <vector>

namespace support {

/// How a run ended and what it said.
struct Run {
  int status = -1;
  std::string out;
  std::string err;
};

/// Calls the command line with these arguments, the program's name left away.
Run runTool(const std::vector<std::string>& arguments);

/// Starts a program of its own and waits for it.
/// \param folder  where the two outputs are kept meanwhile
Run runProgram(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& folder);

} // namespace support
