// SPDX-License-Identifier: BSD-3-Clause
// Runs the real program through a shell, as users do.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace hosttest {

/// Exit status and output of one run.
struct ProgramRun {
  int status = -1;
  std::string out;
  std::string err;

  nlohmann::json json() const { return nlohmann::json::parse(out); }
};

/// Runs `nimbra-host <arguments>`; the arguments are shell text.
/// \param redirection  replaces the capture of standard output
ProgramRun runProgram(const std::string& arguments, const std::string& redirection = {});

} // namespace hosttest
