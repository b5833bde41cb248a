// SPDX-License-Identifier: BSD-3-Clause
// nimbra-host: loads a database and shows what stands on the grid.
// The work is done in command_line.cpp and below.
#include "apps/nimbra-host/command_line.h"

#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <unistd.h>

namespace {

/// A standard descriptor that the caller has closed must not become a database's. The stand-in refuses what
/// is written to it, so that lost output is noticed.
void occupyClosedDescriptors() {
  for (int descriptor = 0; descriptor <= 2; ++descriptor) {
    if (fcntl(descriptor, F_GETFD) < 0) {
      open("/dev/null", descriptor == 0 ? O_WRONLY : O_RDONLY);
    }
  }
}

} // namespace

int main(int argc, char** argv) {
  occupyClosedDescriptors();
  std::signal(SIGPIPE, SIG_IGN);
  return nimbrahost::runHost(argc, argv, std::cout, std::cerr);
}
