// SPDX-License-Identifier: BSD-3-Clause
// rdbtool: makes, imports, describes, verifies and damages databases.
// The work is done in command_line.cpp and below.
#include "apps/rdbtool/command_line.h"
#include "apps/rdbtool/interruption.h"

#include <iostream>

int main(int argc, char** argv) {
  const int status = rdbtool::runTool(argc, argv, std::cout, std::cerr);
  rdbtool::passInterruptionOn();
  return status;
}
