// SPDX-License-Identifier: BSD-3-Clause
// Ctrl-C and similar signals while a file is being written: the incomplete file is removed before the program ends.
#pragma once

namespace apps {

/// While an object lives, the first SIGINT, SIGTERM or SIGHUP is only recorded, and the next one ends the program as
/// usual. A signal that the program's caller has set to be ignored stays ignored.
///
/// \threads one object at a time per process
class InterruptionWatch {
 public:
  InterruptionWatch();
  InterruptionWatch(const InterruptionWatch&) = delete;
  InterruptionWatch& operator=(const InterruptionWatch&) = delete;
  ~InterruptionWatch();
};

/// Whether a signal has been recorded since the program started.
/// \threads safe
bool interrupted() noexcept;

/// Ends the program with the recorded signal, so that its caller sees the cause; returns if there is none.
void raiseRecordedSignal();

} // namespace apps
