// SPDX-License-Identifier: BSD-3-Clause
// rdbtool: makes, imports, describes, verifies and damages databases.
#include "apps/common/program.h"
#include "apps/rdbtool/command_line.h"

#include <iostream>

int main(int argc, char** argv) {
  return apps::runProgram("rdbtool", [=] { return rdbtool::runTool(argc, argv, std::cout, std::cerr); });
}
