// SPDX-License-Identifier: BSD-3-Clause
// Ctrl-C and its like while a database is being written: what is half-written is removed before the program ends.
#pragma once

namespace rdbtool {

/// As long as it lives, the first SIGINT, SIGTERM or SIGHUP is noted only, and the next one ends the program as
/// ever. A signal that the caller has the program ignore stays ignored.
///
/// \threads one object at a time in a process
class InterruptionWatch {
 public:
  InterruptionWatch();
  InterruptionWatch(const InterruptionWatch&) = delete;
  InterruptionWatch& operator=(const InterruptionWatch&) = delete;
  ~InterruptionWatch();
};

/// Raises ToolError with ExitStatus::failed once a signal has been noted.
void stopIfInterrupted();

/// Ends the program by the signal that was noted, so that its caller sees why it ended; returns if there is none.
void passInterruptionOn();

} // namespace rdbtool
