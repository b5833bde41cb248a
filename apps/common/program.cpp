// SPDX-License-Identifier: BSD-3-Clause
// How every program starts, ends and reports a failure.
#include "apps/common/program.h"

#include "apps/common/interruption.h"
#include "apps/common/printable_text.h"

#include <csignal>
#include <exception>
#include <fcntl.h>
#include <iostream>
#include <new>
#include <string>
#include <unistd.h>

namespace apps {

namespace {

/// A standard descriptor that the caller has closed must not become that of a database. The stand-in refuses what is
/// written to it, so that lost output is noticed.
void occupyClosedDescriptors() {
  for (int descriptor = 0; descriptor <= 2; ++descriptor) {
    if (::fcntl(descriptor, F_GETFD) < 0) {
      ::open("/dev/null", descriptor == 0 ? O_WRONLY : O_RDONLY);
    }
  }
}

/// Prints the exception under way; an exception of the printing leaves.
void printFailure(const char* program, std::ostream& err) {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    err << program << ": out of memory\n";
  } catch (const std::exception& error) {
    printLine(err, std::string(program) + ": " + error.what());
  } catch (...) {
    err << program << ": ended by an exception of an unknown type\n";
  }
}

} // namespace

void reportFailure(const char* program, std::ostream& err) noexcept {
  try {
    printFailure(program, err);
  } catch (const std::bad_alloc&) {
    err << program << ": out of memory\n";
  } catch (...) {
    return; // a stream that raises has lost the line
  }
}

int runGuarded(const char* program, std::ostream& err, const std::function<int()>& work) noexcept {
  try {
    return work();
  } catch (...) {
    reportFailure(program, err);
    return 1;
  }
}

bool flushOutput(const char* program, std::ostream& out, std::ostream& err) {
  if (out.flush()) {
    return true;
  }
  err << program << ": cannot write to standard output\n";
  return false;
}

int runProgram(const char* program, const std::function<int()>& work) {
  occupyClosedDescriptors();
  std::signal(SIGXFSZ, SIG_IGN);
  const int status = runGuarded(program, std::cerr, work);
  raiseRecordedSignal();
  return status;
}

} // namespace apps
