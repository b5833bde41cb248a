// SPDX-License-Identifier: BSD-3-Clause
// nimbra-host: loads a database and shows the content of the grid.
#include "apps/common/program.h"
#include "apps/nimbra-host/command_line.h"

#include <csignal>
#include <iostream>

int main(int argc, char** argv) {
  // A reader that goes away ends the output with an error of the write.
  std::signal(SIGPIPE, SIG_IGN);
  return apps::runProgram("nimbra-host",
                          [=] { return nimbrahost::runHost(argc, argv, std::cout, std::cerr); });
}
