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
/// `strong` is the low half of the word and `weak` the high half, both signed 32-bit. A copy of a strong
/// pointer raises both with one fetch-and-add; the halves cannot carry into each other as long as `strong`
/// isn't -1, a value that no step produces (the end values are -111 and -333, and each holder returns at most
/// what it took). Steps that change `strong` alone go through compare-and-exchange and never carry.
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
    const std::int32_t found = strong();
    if (found < 0) {
      raiseWeak();
      return found;
    }
    return lowHalf(word.fetch_add(oneWeak + oneStrong, std::memory_order_acq_rel));
  }

  /// strong + 1 alone.
  void raiseStrong() {
    changeStrong([](std::int32_t value) { return value + 1; });
  }

  /// strong - 1 and weak - 1 in one step, if others hold the object too.
  /// \returns false, with nothing changed, when this is the last strong hold or none
  bool lowerBothUnlessLast() {
    std::uint64_t seen = word.load(std::memory_order_relaxed);
    while (lowHalf(seen) > 1 && highHalf(seen) > 1) {
      if (word.compare_exchange_weak(seen, seen - oneWeak - oneStrong, std::memory_order_acq_rel,
                                     std::memory_order_relaxed)) {
        return true;
      }
    }
    return false;
  }

  /// strong - 1 alone. \returns the new strong count
  std::int32_t lowerStrong() {
    return changeStrong([](std::int32_t value) { return value - 1; }) - 1;
  }

  /// weak - 1. \returns the new weak count
  std::int32_t lowerWeak() { return highHalf(word.fetch_sub(oneWeak, std::memory_order_acq_rel)) - 1; }

  /// strong = `value`, whatever it was. \returns the strong count that was found
  std::int32_t exchangeStrong(std::int32_t value) {
    return changeStrong([value](std::int32_t) { return value; });
  }

  /// Cuts the record off its object. \returns the object, null where it was gone already
  B* takeObject() { return live.exchange(nullptr, std::memory_order_acq_rel); }

 private:
  static constexpr std::uint64_t oneStrong = 1;
  static constexpr std::uint64_t oneWeak = std::uint64_t{1} << 32;

  static std::int32_t lowHalf(std::uint64_t both) { return static_cast<std::int32_t>(both & 0xffffffffU); }
  static std::int32_t highHalf(std::uint64_t both) { return static_cast<std::int32_t>(both >> 32); }

  template <class Change>
  std::int32_t changeStrong(Change change) {
    std::uint64_t seen = word.load(std::memory_order_relaxed);
    std::uint64_t next = 0;
    do {
      const auto strongAfter = static_cast<std::uint32_t>(change(lowHalf(seen)));
      next = (seen & ~std::uint64_t{0xffffffffU}) | strongAfter;
    } while (!word.compare_exchange_weak(seen, next, std::memory_order_acq_rel, std::memory_order_relaxed));
    return lowHalf(seen);
  }

  std::atomic<std::uint64_t> word{0};
  std::atomic<B*> live;
};

} // namespace Torvel
