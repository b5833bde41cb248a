// SPDX-License-Identifier: BSD-3-Clause
// Ctrl-C and its like while a database is being written: what is half-written is removed before the program ends.
#include "apps/rdbtool/interruption.h"

#include "apps/rdbtool/tool_error.h"

#include <array>
#include <atomic>
#include <csignal>

namespace rdbtool {

namespace {

constexpr std::array watched = {SIGINT, SIGTERM, SIGHUP};

std::atomic<int> noted = 0;
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler writes it");

extern "C" void note(int signal) {
  noted = signal;
  std::signal(signal, SIG_DFL);
}

/// Puts `wanted` in the place of what is done on a signal, unless it is ignored.
void handle(int signal, void (*wanted)(int)) {
  if (std::signal(signal, wanted) == SIG_IGN) {
    std::signal(signal, SIG_IGN);
  }
}

} // namespace

InterruptionWatch::InterruptionWatch() {
  for (const int signal : watched) {
    handle(signal, note);
  }
}

InterruptionWatch::~InterruptionWatch() {
  for (const int signal : watched) {
    handle(signal, SIG_DFL);
  }
}

void stopIfInterrupted() {
  if (noted != 0) {
    throw failed("interrupted before the database was written");
  }
}

void passInterruptionOn() {
  if (noted != 0) {
    std::signal(noted, SIG_DFL);
    std::raise(noted);
  }
}

} // namespace rdbtool
