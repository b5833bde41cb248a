// SPDX-License-Identifier: BSD-3-Clause
// Captures the streams of a run in files of a temporary directory.
#include "tests/apps/nimbra-host/program_run.h"

#include "tests/support/file_content.h"
#include "tests/support/temp_dir.h"

#include <csignal>
#include <cstdlib>
#include <sys/wait.h>

namespace hosttest {

using support::contentOf;

ProgramRun runProgram(const std::string& arguments, const std::string& redirection) {
  // An ignored signal would be inherited and hide how the program handles it.
  std::signal(SIGPIPE, SIG_DFL);
  const support::TempDir directory;
  const std::string output = redirection.empty() ? ">" + directory.path("out") : redirection;
  const std::string command = "( \"" HOST_PROGRAM "\" " + arguments + " 2>" + directory.path("err") +
                              "; echo $? >" + directory.path("status") + " ) " + output;
  if (std::system(command.c_str()) == -1) {
    return {};
  }
  ProgramRun run;
  run.status = std::atoi(contentOf(directory.path("status")).c_str());
  run.out = contentOf(directory.path("out"));
  run.err = contentOf(directory.path("err"));
  return run;
}

} // namespace hosttest
