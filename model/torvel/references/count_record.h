// SPDX-License-Identifier: BSD-3-Clause
// The two counts of a counted object, in one atomic word so that a hold costs one atomic step.
#pragma once

#include <atomic>
#include <cstdint>

namespace Torvel {

/// Strong count of an object that has been or is being destroyed through the count.
inline constexpr std::int32_t strongDestroyed = -111;
/// Strong count of an object that was destroyed while the count still stood; at once followed by
/// `strongDestroyed`.
inline constexpr std::int32_t strongDestroyedWhileHeld = -333;

/// Counts of one object, on the heap, outliving the object: it is freed by whoever brings `weak` to 0.
///
/// `strong` is the low half of the word and `weak` the high half, both signed 32-bit.
///
/// - Every change is one atomic read-modify-write of the whole word. A step that touches `strong` goes
///   through compare-and-exchange and computes each half by itself, so the halves never carry into each
///   other, whatever `strong` holds; a step on `weak` alone adds to the high half, whose carry leaves the
///   word.
/// - Every change is acquire and release unless it says otherwise: what a thread did to the object under its
///   hold happens before the end of the object, on whichever thread that comes. Reading a count acquires.
/// - `strong` is never raised once it is negative: the test and the increase are one step, so the end value
///   stays what it is however many threads try to take the object up.
/// - The end of an object is one step too: it is marked only where `strong` isn't positive. A thread that
///   raised `strong` first keeps the object; one that comes later finds the mark and takes a weak hold.
template <class B>
class CountRecord {
 public:
  explicit CountRecord(B* object) : live(object) {}

  std::int32_t strong() const { return lowHalf(word.load(std::memory_order_acquire)); }
  std::int32_t weak() const { return highHalf(word.load(std::memory_order_acquire)); }
  B* object() const { return live.load(std::memory_order_acquire); }

  /// True where a dereference may give the object.
  bool alive() const { return object() != nullptr && strong() >= 0; }

  /// weak + 1. Relaxed: whoever copies a hold has one already.
  void raiseWeak() { word.fetch_add(oneWeak, std::memory_order_relaxed); }

  /// strong + 1 and weak + 1 where strong isn't negative, else weak + 1 alone.
  /// \returns the strong count that was found
  std::int32_t raiseBoth() {
    return change([](std::int32_t strong, std::int32_t weak) {
      return both(strong < 0 ? strong : strong + 1, weak + 1);
    });
  }

  /// strong + 1 alone.
  void raiseStrong() {
    change([](std::int32_t strong, std::int32_t weak) { return both(strong + 1, weak); });
  }

  /// strong - 1 and weak - 1 in one step, if others hold the object too.
  /// \returns false, with nothing changed, when this is the last strong hold or none
  bool lowerBothUnlessLast() {
    std::uint64_t seen = word.load(std::memory_order_relaxed);
    while (lowHalf(seen) > 1 && highHalf(seen) > 1) {
      const std::uint64_t next = both(lowHalf(seen) - 1, highHalf(seen) - 1);
      if (word.compare_exchange_weak(seen, next, std::memory_order_acq_rel, std::memory_order_relaxed)) {
        return true;
      }
    }
    return false;
  }

  /// strong - 1 alone. \returns the new strong count
  std::int32_t lowerStrong() {
    return change([](std::int32_t strong, std::int32_t weak) { return both(strong - 1, weak); }) - 1;
  }

  /// weak - 1. \returns the new weak count
  std::int32_t lowerWeak() { return highHalf(word.fetch_sub(oneWeak, std::memory_order_acq_rel)) - 1; }

  /// strong = `value`, whatever it was. \returns the strong count that was found
  std::int32_t exchangeStrong(std::int32_t value) {
    return change([value](std::int32_t, std::int32_t weak) { return both(value, weak); });
  }

  /// strong = -111 where nobody holds the object, else nothing. \returns the strong count that was found:
  /// above 0, somebody has taken the object up and it must live on
  std::int32_t markDestroyedUnlessHeld() {
    return change([](std::int32_t strong, std::int32_t weak) {
      return both(strong > 0 ? strong : strongDestroyed, weak);
    });
  }

  /// Cuts the record off its object. \returns the object, null where it was gone already
  B* takeObject() { return live.exchange(nullptr, std::memory_order_acq_rel); }

 private:
  static constexpr std::uint64_t oneWeak = std::uint64_t{1} << 32;

  static std::int32_t lowHalf(std::uint64_t counts) {
    return static_cast<std::int32_t>(counts & 0xffffffffU);
  }
  static std::int32_t highHalf(std::uint64_t counts) { return static_cast<std::int32_t>(counts >> 32); }
  static std::uint64_t both(std::int32_t strong, std::int32_t weak) {
    return (std::uint64_t{static_cast<std::uint32_t>(weak)} << 32) | static_cast<std::uint32_t>(strong);
  }

  /// Replaces the word by what `next` makes of its halves. \returns the strong count that was found
  template <class Next>
  std::int32_t change(Next next) {
    std::uint64_t seen = word.load(std::memory_order_relaxed);
    while (!word.compare_exchange_weak(seen, next(lowHalf(seen), highHalf(seen)), std::memory_order_acq_rel,
                                       std::memory_order_relaxed)) {
    }
    return lowHalf(seen);
  }

  std::atomic<std::uint64_t> word{0};
  std::atomic<B*> live;
};

} // namespace Torvel
