// SPDX-License-Identifier: BSD-3-Clause
// Process-wide counters of the object library: the serial of pointers and the clock of changes.
#pragma once

#include "model/torvel/core/api.h"

#include <atomic>
#include <cstdint>

namespace Torvel {

/// Serial number of the smart pointer made last. For diagnostics only: it is read, increased and stored
/// without an atomic read-modify-write, so increments from several threads at once may be lost.
TORVEL_API extern std::uint64_t PointerID;

/// Adds `amount` to a diagnostic counter without an atomic read-modify-write. Load and store are each atomic
/// and relaxed (no torn values, no data race); an increase by another thread between them is lost.
///
/// \param counter  not owned, lives as long as the process
/// \return the value that was stored
/// \threads safe; increases may be lost
template <class Integer>
inline Integer addLossy(Integer& counter, Integer amount) {
  const Integer next = __atomic_load_n(&counter, __ATOMIC_RELAXED) + amount;
  __atomic_store_n(&counter, next, __ATOMIC_RELAXED);
  return next;
}

/// Takes the serial number of a new pointer.
/// \threads safe; numbers may repeat
inline std::uint64_t nextPointerID() {
  return addLossy<std::uint64_t>(PointerID, 1);
}

/// An object with the time of its last change, on a clock that counts the changes of all objects of the
/// process.
///
/// \threads the clock is safe, the time of an object is not protected
class TORVEL_API Ageable {
 public:
  /// The clock, in changes. Each `touch` adds 1.
  static std::atomic<std::uint64_t> GlobalTime;

  /// Marks a change: adds 1 to the clock (one atomic step, relaxed) and stores its new value in this object.
  void touch() { age = GlobalTime.fetch_add(1, std::memory_order_relaxed) + 1; }

  /// \return the clock at the last change, 0 before the first one
  std::uint64_t lastChange() const { return age; }

 private:
  std::uint64_t age = 0;
};

} // namespace Torvel
