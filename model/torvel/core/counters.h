// SPDX-License-Identifier: BSD-3-Clause
// Process-wide counters of the object library: the serial of pointers and the clock of changes.
#pragma once

#include "model/torvel/core/api.h"

#include <atomic>
#include <cstdint>

namespace Torvel {

/// Serial of the next smart pointer. Diagnostic only: it is read, increased and stored without an atomic
/// read-modify-write, so concurrent use may lose increments.
TORVEL_API extern std::uint64_t PointerID;

/// Adds `amount` to a diagnostic counter that several threads may touch at once. The load and the store are
/// each whole (no torn values, no undefined behaviour), the increase between them may be lost.
/// \returns the new value
template <class Integer>
inline Integer addLossy(Integer& counter, Integer amount) {
  const Integer next = __atomic_load_n(&counter, __ATOMIC_RELAXED) + amount;
  __atomic_store_n(&counter, next, __ATOMIC_RELAXED);
  return next;
}

/// Serial number for a pointer that is being made.
inline std::uint64_t nextPointerID() {
  return addLossy<std::uint64_t>(PointerID, 1);
}

/// An object that remembers when it was last changed, on a clock of changes that all objects share.
class TORVEL_API Ageable {
 public:
  /// The clock: every change of any object moves it on by one.
  static std::atomic<std::uint64_t> GlobalTime;

  /// Marks a change: one atomic step of the clock, then its new value becomes the age of this object.
  void touch() { age = GlobalTime.fetch_add(1, std::memory_order_relaxed) + 1; }

  /// Time of the last change, 0 before the first one.
  std::uint64_t lastChange() const { return age; }

 private:
  std::uint64_t age = 0;
};

} // namespace Torvel
