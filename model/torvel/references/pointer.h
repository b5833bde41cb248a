// SPDX-License-Identifier: BSD-3-Clause
// Strong and weak pointers; long, as both share each step. Counts: model/torvel/references/count_record.h
#pragma once

#include "model/torvel/core/speak_ptr.h"
#include "model/torvel/references/reference_base.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <typeinfo>

namespace Torvel {

/// What strong and weak pointers have in common: a serial for diagnostics, the object's counts, and the
/// object as T. It takes one weak hold of the counts.
///
/// Dereferencing never raises: a pointer whose object is gone gives null.
template <class T, class B>
class DynPtr {
 public:
  /// The object, or null: no record, no object in it, or a negative strong count.
  T* get() const { return record != nullptr && record->alive() ? cached : nullptr; }
  T* operator->() const { return get(); }
  T& operator*() const { return *get(); }

  /// Valid: a live object that is a T.
  explicit operator bool() const { return get() != nullptr; }

  /// Serial number of this pointer, from the process-wide counter.
  std::uint64_t serialNumber() const { return id; }

  /// Counts of the object, null where the pointer never had one. For diagnostics and tests.
  const CountRecord<B>* counts() const { return record; }

  template <class U>
  bool operator==(const DynPtr<U, B>& other) const {
    return static_cast<const void*>(counts()) == static_cast<const void*>(other.counts());
  }
  bool operator==(std::nullptr_t) const { return get() == nullptr; }

 protected:
  template <class U, class C>
  friend class DynPtr;

  DynPtr() : id(nextPointerID()) {}

  ~DynPtr() = default;
  DynPtr(const DynPtr&) = delete;
  DynPtr& operator=(const DynPtr&) = delete;

  /// Takes the record of a raw object, without any hold.
  void takeRecord(const ReferenceBase<B>* object) { record = object->self.record; }

  /// Takes the record of another pointer, without any hold.
  template <class U>
  void takeRecord(const DynPtr<U, B>& other) {
    reportSelfConstruction(&other);
    record = other.record;
  }

  /// Takes the object of another pointer as T. A null pointer there may be the result of a failed cast, which says
  /// nothing about T: the live object is then cast anew. Called after the hold is taken, because the cast reads the
  /// object; a strong hold keeps it alive meanwhile, a weak one relies on the caller.
  template <class U>
  void takeObject(const DynPtr<U, B>& other) {
    if constexpr (std::is_convertible_v<U*, T*>) {
      cached = other.get();
      if (cached != nullptr) [[likely]] {
        return;
      }
    }
    cached = castLive();
  }

  /// Where source and destination are one object there is nothing to copy from; the report says so.
  void reportSelfConstruction(const void* source) const {
    if (source == this) [[unlikely]] {
      SpeakPtr::theSpeaker().SelfConstruction(typeid(DynPtr), this, record);
    }
  }

  void holdWeak() {
    if (record != nullptr) {
      record->raiseWeak();
    }
  }

  /// Gives the weak hold back, and the record with the last one.
  void releaseWeak(const std::type_info& pointer) {
    if (record == nullptr) {
      return;
    }
    if (record->weak() <= 0) [[unlikely]] {
      reportInvalidWeak(pointer);
    }
    if (record->lowerWeak() == 0) {
      CountRecord<B>* const last = record;
      record = nullptr;
      delete last;
    }
  }

  std::uint64_t id = 0;
  CountRecord<B>* record = nullptr;
  T* cached = nullptr;

  T* castLive() const {
    if (record == nullptr || !record->alive()) {
      return nullptr;
    }
    if constexpr (std::is_same_v<std::remove_const_t<T>, B> || std::is_convertible_v<B*, T*>) {
      return record->object();
    } else {
      return dynamic_cast<T*>(record->object());
    }
  }

 private:
  /// Two forms: a live object still tells its own type, a dead one only that of the pointer.
  void reportInvalidWeak(const std::type_info& pointer) const {
    const B* const object = record->object();
    const std::type_info& type = object != nullptr ? typeid(*object) : typeid(T);
    SpeakPtr::theSpeaker().InvalidWeakPtr(pointer, typeid(DynPtr), type, typeid(B), record->strong(),
                                          record->weak(), record, object, static_cast<long long>(id));
  }
};

/// A hold that doesn't keep the object alive: one weak count.
template <class T, class B>
class WeakPtr : public DynPtr<T, B> {
  using Base = DynPtr<T, B>;

 public:
  WeakPtr() = default;
  WeakPtr(std::nullptr_t) {}
  /// Refers to `object`; null gives an empty pointer.
  WeakPtr(T* object) : WeakPtr(object == nullptr ? none() : WeakPtr(FromObject{}, object)) {}
  WeakPtr(const WeakPtr& other) : WeakPtr() { take(other); }
  template <class U>
  WeakPtr(const DynPtr<U, B>& other) : WeakPtr() {
    take(other);
  }
  WeakPtr& operator=(const WeakPtr& other) {
    assign(other);
    return *this;
  }
  template <class U>
  WeakPtr& operator=(const DynPtr<U, B>& other) {
    assign(other);
    return *this;
  }
  ~WeakPtr() { this->releaseWeak(typeid(WeakPtr)); }

 private:
  struct FromObject {};
  WeakPtr(FromObject, T* object) : WeakPtr() {
    this->takeRecord(static_cast<const ReferenceBase<B>*>(object));
    this->holdWeak();
    this->cached = this->castLive();
  }

  static const WeakPtr& none() {
    static const WeakPtr empty;
    return empty;
  }

  template <class U>
  void take(const DynPtr<U, B>& other) {
    this->takeRecord(other);
    this->holdWeak();
    this->takeObject(other);
  }

  template <class U>
  void assign(const DynPtr<U, B>& other) {
    WeakPtr incoming(other); // goes with what this one held, under the number that it was held by
    std::swap(this->id, incoming.id);
    std::swap(this->record, incoming.record);
    std::swap(this->cached, incoming.cached);
  }
};

/// A hold that keeps the object alive: one strong and one weak count.
template <class T, class B>
class StrongPtr : public DynPtr<T, B> {
  using Base = DynPtr<T, B>;

 public:
  StrongPtr() = default;
  StrongPtr(std::nullptr_t) {}
  /// Takes `object` up; null gives an empty pointer. The first hold of an object makes the scheme its owner.
  StrongPtr(T* object) : StrongPtr(object == nullptr ? none() : StrongPtr(FromObject{}, object)) {}
  StrongPtr(const StrongPtr& other) : StrongPtr() { take(other); }
  template <class U>
  StrongPtr(const DynPtr<U, B>& other) : StrongPtr() {
    take(other);
  }
  StrongPtr& operator=(const StrongPtr& other) {
    assign(other);
    return *this;
  }
  template <class U>
  StrongPtr& operator=(const DynPtr<U, B>& other) {
    assign(other);
    return *this;
  }
  ~StrongPtr() { release(); }

 private:
  struct FromObject {};
  // Delegates, like every constructor that holds: where the deferred construction raises, the destructor
  // gives the holds back.
  StrongPtr(FromObject, T* object) : StrongPtr() {
    this->takeRecord(static_cast<const ReferenceBase<B>*>(object));
    hold();
    this->cached = this->castLive();
  }

  static const StrongPtr& none() {
    static const StrongPtr empty;
    return empty;
  }

  template <class U>
  void take(const DynPtr<U, B>& other) {
    this->takeRecord(other);
    hold();
    this->takeObject(other);
  }

  template <class U>
  void assign(const DynPtr<U, B>& other) {
    StrongPtr incoming(other); // goes with what this one held, under the number that it was held by
    std::swap(this->id, incoming.id);
    std::swap(this->record, incoming.record);
    std::swap(this->cached, incoming.cached);
  }

  /// weak + 1 and, on a live record, strong + 1. The first strong hold finishes the construction of an object
  /// whose family defers it.
  void hold() {
    if (this->record == nullptr) {
      return;
    }
    [[maybe_unused]] const std::int32_t found = this->record->raiseBoth();
    if constexpr (requires(B & object) { object.CacheableDeferredConstructor(); }) {
      if (B* const object = this->record->object(); found == 0 && object != nullptr) {
        object->CacheableDeferredConstructor();
      }
    }
  }

  void release() {
    if (this->record == nullptr || this->record->lowerBothUnlessLast()) {
      return;
    }
    if (this->record->strong() > 0) {
      releaseLast();
    }
    this->releaseWeak(typeid(StrongPtr));
  }

  /// The hook, the decrement, and the end of the object unless somebody has taken it up again meanwhile.
  void releaseLast() {
    CountRecord<B>& counts = *this->record;
    B* const held = counts.object();
    if (counts.strong() == 1 && held != nullptr && held->hasPreDestruction()) {
      held->preDestruction();
      if (counts.strong() != 1) {
        SpeakPtr::WarningUnctionChange(counts.strong(), counts.weak(), typeid(B));
      }
    }
    if (counts.lowerStrong() != 0) {
      return;
    }
    if (counts.object() == nullptr || counts.strong() < 0) {
      SpeakPtr::DynPtrInvalid(&counts, counts.object(), counts.strong(), counts.weak(), typeid(B));
    }
    if (counts.markDestroyedUnlessHeld() > 0) {
      SpeakPtr::DestructionCancelled(counts.strong(), counts.weak(), typeid(B));
      return;
    }
    B* const object = counts.takeObject();
    if constexpr (requires(B & dying) { dying.PreDestructor(); }) {
      if (object != nullptr) {
        object->PreDestructor();
      }
    }
    delete object;
  }
};

} // namespace Torvel
