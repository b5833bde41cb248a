// SPDX-License-Identifier: BSD-3-Clause
// Base of every counted object: the link to its counts, and its serial number.
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

/// Base of all classes of one family of counted objects. B is the class that names the family and derives
/// from this one. A new object has strong 0 (no pointer holds it yet) and weak 1 (its own link). It is
/// destroyed when strong falls from 1 to 0.
///
/// \threads counts may be changed from several threads; the object itself is not protected
template <class B>
class TORVEL_API ReferenceBase : public PreDestructionHook {
 public:
  /// Separates the record from the object, then weak - 1, which frees the record at 0. A strong count that
  /// isn't negative, which means a destruction without the counts, is set to -333 and at once to -111. All
  /// steps acquire and release.
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

  /// \return the number of this object among all objects of its family, from 0
  std::uint64_t serialNumber() const { return serial; }

  /// \return the counts of this object, which live at least as long; for diagnostics and tests
  const CountRecord<B>& counts() const { return *self.record; }

 protected:
  /// Allocates the record with both counts 0, then weak + 1 (relaxed: no other thread knows the record yet).
  /// \param object  this object as B
  /// \errors  MemoryException where `object` is null; std::bad_alloc
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

  /// strong + 1, never released, so the object is never destroyed by its count. Acquire and release.
  void holdItself() { self.record->raiseStrong(); }

 private:
  template <class T, class Family>
  friend class DynPtr;

  /// The link to the counts: as a pointer has it, without a cached object.
  struct SelfLink {
    std::uint64_t id = 0;
    CountRecord<B>* record = nullptr;
  };

  inline static std::atomic<std::uint64_t> nextSerial{0};

  SelfLink self;
  std::uint64_t serial = 0;
};

/// A T for static objects: it holds one strong count of itself, so that its count never destroys it.
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
