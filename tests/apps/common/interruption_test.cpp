// SPDX-License-Identifier: BSD-3-Clause
// Signals while a file is being written. A recorded signal stays recorded, so each test has a process of its own.
#include "apps/common/interruption.h"

#include <csignal>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

/// Ends the process with status 0 where `well` holds.
[[noreturn]] void endWith(bool well) {
  ::_exit(well ? 0 : 1);
}

void recordThenPassOn(int signal) {
  {
    const apps::InterruptionWatch watch;
    std::raise(signal);
  }
  apps::interrupted() ? apps::raiseRecordedSignal() : ::_exit(1);
  ::_exit(2);
}

TEST(InterruptionDeathTest, TheFirstSignalIsRecordedAndEndsTheProgramLater) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    EXPECT_EXIT(recordThenPassOn(signal), testing::KilledBySignal(signal), "");
  }
}

TEST(InterruptionDeathTest, TheSecondSignalEndsTheProgramAtOnce) {
  const auto interruptTwice = [] {
    const apps::InterruptionWatch watch;
    std::raise(SIGINT);
    std::raise(SIGINT);
    ::_exit(1);
  };
  EXPECT_EXIT(interruptTwice(), testing::KilledBySignal(SIGINT), "");
}

TEST(InterruptionDeathTest, AnIgnoredSignalStaysIgnored) {
  const auto ignoring = [] {
    std::signal(SIGHUP, SIG_IGN);
    {
      const apps::InterruptionWatch watch;
      std::raise(SIGHUP);
    }
    std::raise(SIGHUP);
    endWith(!apps::interrupted());
  };
  EXPECT_EXIT(ignoring(), testing::ExitedWithCode(0), "");
}

TEST(InterruptionDeathTest, WithoutASignalNothingIsRaised) {
  const auto undisturbed = [] {
    { const apps::InterruptionWatch watch; }
    apps::raiseRecordedSignal();
    endWith(!apps::interrupted());
  };
  EXPECT_EXIT(undisturbed(), testing::ExitedWithCode(0), "");
}

} // namespace
