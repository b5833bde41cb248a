// SPDX-License-Identifier: BSD-3-Clause
// The two counts of a counted object, in one atomic word so that a hold costs one atomic step.
#pragma once

#include <atomic>
#include <cstdint>
#include <limits>

namespace Torvel {

/// Strong count of an object that has been or is being destroyed through the count.
inline constexpr std::int32_t strongDestroyed = -111;
/// Strong count of an object that was destroyed while the count still stood; at once followed by
/// `strongDestroyed`.
inline constexpr std::int32_t strongDestroyedWhileHeld = -333;

/// A count that has reached this value stays there: neither a new hold nor the end of one changes it. The object of
/// such a strong count and the record of such a weak count live until the process ends, which is safe, whereas a count
/// that starts again from the other end would free them under their holders. None of the reports covers it.
inline constexpr std::int32_t countMaximum = std::numeric_limits<std::int32_t>::max();

/// Counts of one object, on the heap, outliving the object: it is freed by whoever brings `weak` to 0.
///
/// `strong` is the low half of the word and `weak` the high half, both signed 32-bit.
///
/// - Every change is one atomic read-modify-write of the whole word, a compare-and-exchange that computes each half by
///   itself, so the halves never carry into each other, whatever they hold. Both stop at the ends of their range; see
///   `countMaximum`.
/// - Memory order: a step that raises only `weak` is relaxed, because the caller holds the record already. Every other
///   change is acquire and release: what a thread did to the object under its hold happens before the end of the
///   object, on whichever thread that comes. Reading a count acquires.
/// - `strong` is never raised once it is negative by a step that takes a hold: the test and the increase are one step,
///   so the end mark stays what it is however many threads try to take the object up.
/// - The end of an object is one step too: it is marked only where `strong` isn't positive. A thread that raised
///   `strong` first keeps the object; one that comes later finds the mark and takes a weak hold.
///
/// \threads all operations are safe on one record while the caller holds it
template <class B>
class CountRecord {
 public:
  /// \param object  what is counted, not owned
  /// \param strong,weak  the first counts; an object's own record starts with none
  explicit CountRecord(B* object, std::int32_t strong = 0, std::int32_t weak = 0)
      : word(both(strong, weak)), live(object) {}

  /// The counts and the object at this moment. Acquire; changes nothing.
  std::int32_t strong() const { return lowHalf(word.load(std::memory_order_acquire)); }
  std::int32_t weak() const { return highHalf(word.load(std::memory_order_acquire)); }
  B* object() const { return live.load(std::memory_order_acquire); }

  /// True where a dereference may return the object: there is one, and strong isn't negative. Acquire; changes nothing.
  bool alive() const { return object() != nullptr && strong() >= 0; }

  /// weak + 1, strong unchanged. Relaxed.
  void raiseWeak() {
    change([](std::int32_t strong, std::int32_t weak) { return both(strong, raised(weak)); },
           std::memory_order_relaxed);
  }

  /// strong + 1 and weak + 1 where strong isn't negative, else weak + 1 alone. Acquire and release.
  /// \return the strong count that was found
  std::int32_t raiseBoth() {
    return lowHalf(change([](std::int32_t strong, std::int32_t weak) {
      return both(strong < 0 ? strong : raised(strong), raised(weak));
    }));
  }

  /// strong + 1, weak unchanged. Acquire and release.
  void raiseStrong() {
    change([](std::int32_t strong, std::int32_t weak) { return both(raised(strong), weak); });
  }

  /// strong - 1 and weak - 1 in one step where both are above 1, else nothing. Acquire and release where it changes.
  /// \return false, with nothing changed, when this is the last strong hold or none
  bool lowerBothUnlessLast() {
    std::uint64_t seen = word.load(std::memory_order_relaxed);
    while (lowHalf(seen) > 1 && highHalf(seen) > 1) {
      const std::uint64_t next = both(lowered(lowHalf(seen)), lowered(highHalf(seen)));
      if (word.compare_exchange_weak(seen, next, std::memory_order_acq_rel, std::memory_order_relaxed)) {
        return true;
      }
    }
    return false;
  }

  /// strong - 1, weak unchanged. Acquire and release. \return the new strong count
  std::int32_t lowerStrong() {
    return lowered(
        lowHalf(change([](std::int32_t strong, std::int32_t weak) { return both(lowered(strong), weak); })));
  }

  /// weak - 1, strong unchanged. Acquire and release. \return the new weak count
  std::int32_t lowerWeak() {
    return lowered(
        highHalf(change([](std::int32_t strong, std::int32_t weak) { return both(strong, lowered(weak)); })));
  }

  /// strong = `value`, whatever it was, weak unchanged. Acquire and release. \return the strong count that was found
  std::int32_t exchangeStrong(std::int32_t value) {
    return lowHalf(change([value](std::int32_t, std::int32_t weak) { return both(value, weak); }));
  }

  /// strong = -111 where no strong hold stands, else unchanged; weak unchanged. Acquire and release.
  /// \return the strong count that was found: above 0, another pointer has taken the object up and it must live on
  std::int32_t markDestroyedUnlessHeld() {
    return lowHalf(change([](std::int32_t strong, std::int32_t weak) {
      return both(strong > 0 ? strong : strongDestroyed, weak);
    }));
  }

  /// Separates the record from its object; both counts unchanged. Acquire and release, so that one caller gets the
  /// object. \return the object, null where it was taken already
  B* takeObject() { return live.exchange(nullptr, std::memory_order_acq_rel); }

 private:
  static std::int32_t lowHalf(std::uint64_t counts) {
    return static_cast<std::int32_t>(counts & 0xffffffffU);
  }
  static std::int32_t highHalf(std::uint64_t counts) { return static_cast<std::int32_t>(counts >> 32); }
  static std::uint64_t both(std::int32_t strong, std::int32_t weak) {
    return (std::uint64_t{static_cast<std::uint32_t>(weak)} << 32) | static_cast<std::uint32_t>(strong);
  }

  static std::int32_t raised(std::int32_t count) { return count == countMaximum ? count : count + 1; }
  static std::int32_t lowered(std::int32_t count) {
    const bool atAnEnd = count == countMaximum || count == std::numeric_limits<std::int32_t>::min();
    return atAnEnd ? count : count - 1;
  }

  /// Replaces the word by what `next` makes of its halves. \return the word that was found
  template <class Next>
  std::uint64_t change(Next next, std::memory_order order = std::memory_order_acq_rel) {
    std::uint64_t seen = word.load(std::memory_order_relaxed);
    while (!word.compare_exchange_weak(seen, next(lowHalf(seen), highHalf(seen)), order,
                                       std::memory_order_relaxed)) {
    }
    return seen;
  }

  std::atomic<std::uint64_t> word;
  std::atomic<B*> live;
};

} // namespace Torvel
