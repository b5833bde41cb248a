// SPDX-License-Identifier: BSD-3-Clause
// The counts of one object, on the heap apart from it.
#pragma once

#include "model/torvel/core/api.h"

#include <atomic>
#include <cstdint>

namespace quarry {

/// Lives until its object and the last pointer are gone. A new tally has no owner and one holder, the object.
class TORVEL_API Tally {
 public:
  using Destroy = void (*)(void* object);

  Tally(void* object, Destroy destroy) noexcept : object_(object), destroy_(destroy) {}
  Tally(const Tally&) = delete;
  Tally& operator=(const Tally&) = delete;

  bool live() const noexcept { return (owners_.load(std::memory_order_acquire) & gone) == 0; }

  void hold() noexcept { holders_.fetch_add(1, std::memory_order_relaxed); }
  void drop() noexcept;

  /// One owner more; false, and nothing done, if the object is gone.
  bool own() noexcept;
  /// One owner fewer; the last one destroys the object.
  void disown() noexcept;
  /// The object ends, by its last owner or by itself.
  void close() noexcept;

 private:
  static constexpr std::uint64_t gone = std::uint64_t{1} << 63;

  ~Tally() = default;

  std::atomic<std::uint64_t> owners_{0};
  std::atomic<std::uint64_t> holders_{1};
  void* object_;
  Destroy destroy_;
};

} // namespace quarry
