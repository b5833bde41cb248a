// SPDX-License-Identifier: BSD-3-Clause
// Ctrl-C and similar signals while a file is being written: the incomplete file is removed before the program ends.
#include "apps/common/interruption.h"

#include <array>
#include <atomic>
#include <csignal>

namespace apps {

namespace {

constexpr std::array watched = {SIGINT, SIGTERM, SIGHUP};

std::atomic<int> recorded = 0;
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler writes it");

extern "C" void record(int signal) {
  recorded = signal;
  std::signal(signal, SIG_DFL);
}

/// Installs a handler unless the signal is ignored.
void handle(int signal, void (*handler)(int)) {
  if (std::signal(signal, handler) == SIG_IGN) {
    std::signal(signal, SIG_IGN);
  }
}

} // namespace

InterruptionWatch::InterruptionWatch() {
  for (const int signal : watched) {
    handle(signal, record);
  }
}

InterruptionWatch::~InterruptionWatch() {
  for (const int signal : watched) {
    handle(signal, SIG_DFL);
  }
}

bool interrupted() noexcept {
  return recorded != 0;
}

void raiseRecordedSignal() {
  if (recorded != 0) {
    std::signal(recorded, SIG_DFL);
    std::raise(recorded);
  }
}

} // namespace apps
