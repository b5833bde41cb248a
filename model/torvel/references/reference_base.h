// SPDX-License-Identifier: BSD-3-Clause
// Base of every counted object: its link to its own counts, its serial, and the hook before its end.
#pragma once

#include "model/torvel/core/api.h"
#include "model/torvel/core/counters.h"
#include "model/torvel/core/memory_exception.h"
#include "model/torvel/references/count_record.h"
#include "model/torvel/references/pre_destruction.h"

#include <atomic>
#include <cstdint>
#include <memory>

namespace Torvel {

template <class T, class B>
class DynPtr;

/// Base of all classes of one family of counted objects; B is the class that names the family and derives
/// from this one. An object starts with strong 0 (nobody has taken it yet) and weak 1 (its own link), lives
/// while strong is above 0, and dies when strong falls from 1 to 0.
///
/// \threads counts may be changed from several threads; the object itself is not protected
template <class B>
class TORVEL_API ReferenceBase : public PreDestructionHook {
 public:
  /// Ends the object's own weak hold. A strong count that still stands is marked twice, -333 and then -111.
  virtual ~ReferenceBase() {
    if (self.record->strong() >= 0) {
      self.record->exchangeStrong(strongDestroyedWhileHeld);
      self.record->exchangeStrong(strongDestroyed);
    }
    self.record->takeObject();
    if (self.record->lowerWeak() == 0) {
      delete self.record;
    }
  }

  /// Number of this object among all objects of its family, from 0.
  std::uint64_t serialNumber() const { return serial; }

  /// The counts of this object, for diagnostics and tests.
  const CountRecord<B>& counts() const { return *self.record; }

 protected:
  /// \param object  this object as B
  /// \errors  MemoryException where `object` is null
  explicit ReferenceBase(B* object) {
    auto record = std::make_unique<CountRecord<B>>(object);
    if (object == nullptr) {
      throw MemoryException();
    }
    self.record = record.release();
    self.id = nextPointerID();
    self.record->raiseWeak();
    serial = nextSerial.fetch_add(1, std::memory_order_relaxed);
  }

  /// One strong count that nobody gives back: the object never dies through the count.
  void holdItself() { self.record->raiseStrong(); }

 private:
  template <class T, class Family>
  friend class DynPtr;

  /// The link to the counts: a pointer's serial and record, without a cached object.
  struct SelfLink {
    std::uint64_t id = 0;
    CountRecord<B>* record = nullptr;
  };

  inline static std::atomic<std::uint64_t> nextSerial{0};

  SelfLink self;
  std::uint64_t serial = 0;
};

/// A T that is itself a static object: it takes one strong count on itself and so never dies through the
/// count, only at the end of the process. Adds nothing but that.
template <class T>
class Auto : public T {
 public:
  template <class... Arguments>
  explicit Auto(Arguments&&... arguments) : T(static_cast<Arguments&&>(arguments)...) {
    this->holdItself();
  }
  ~Auto() override = default;
};

} // namespace Torvel
