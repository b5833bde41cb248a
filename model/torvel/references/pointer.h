// SPDX-License-Identifier: BSD-3-Clause
// Strong and weak pointers to counted objects; long, because both share their steps.
#pragma once

#include "model/torvel/core/speak_ptr.h"
#include "model/torvel/references/reference_base.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <typeinfo>

namespace Torvel {

/// Common base of strong and weak pointers: a serial number for diagnostics, the count record, and the object
/// as T. Every pointer with a record holds one weak count of it, which keeps the record allocated.
///
/// Dereferencing never raises: a pointer whose object is gone returns null.
/// `model/torvel/references/count_record.h` states the memory order of each step on the counts.
///
/// \threads distinct pointers to one object may be used from several threads; one pointer is not protected
template <class T, class B>
class DynPtr {
 public:
  /// \return the object; null where there is no record, no object in it, a negative strong count, or no cast
  /// to T. Changes no count, acquires.
  T* get() const { return record != nullptr && record->alive() ? cached : nullptr; }
  T* operator->() const { return get(); }
  T& operator*() const { return *get(); }

  /// True where the object is alive and a T.
  explicit operator bool() const { return get() != nullptr; }

  /// \return the serial number of this pointer, for diagnostics
  std::uint64_t serialNumber() const { return id; }

  /// \return the counts of the object, null for an empty pointer; for diagnostics and tests
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

  /// Takes the record of an object; changes no count.
  void takeRecord(const ReferenceBase<B>* object) { record = object->self.record; }

  /// Takes the record of another pointer; changes no count.
  template <class U>
  void takeRecord(const DynPtr<U, B>& other) {
    reportSelfConstruction(&other);
    record = other.record;
  }

  /// Takes the object of another pointer as T. A null pointer there may be the result of a failed cast, which
  /// says nothing about T: the live object is then cast anew. Called after the hold is taken, because the
  /// cast reads the object; a strong hold keeps it alive meanwhile, a weak one relies on the caller.
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

  /// Reports a pointer that is constructed from itself.
  void reportSelfConstruction(const void* source) const {
    if (source == this) [[unlikely]] {
      SpeakPtr::theSpeaker().SelfConstruction(typeid(DynPtr), this, record);
    }
  }

  /// weak + 1, strong unchanged. Relaxed: the source of the record keeps it allocated.
  void holdWeak() {
    if (record != nullptr) {
      record->raiseWeak();
    }
  }

  /// weak - 1, strong unchanged; frees the record at 0. Acquire and release, so that the record is freed
  /// after every other use of it.
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

  /// \return the live object as T, null where it is none; changes no count
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
  /// Names the type of the object while it is alive, afterwards that of the pointer.
  void reportInvalidWeak(const std::type_info& pointer) const {
    const B* const object = record->object();
    const std::type_info& type = object != nullptr ? typeid(*object) : typeid(T);
    SpeakPtr::theSpeaker().InvalidWeakPtr(pointer, typeid(DynPtr), type, typeid(B), record->strong(),
                                          record->weak(), record, object, static_cast<long long>(id));
  }
};

/// A reference that doesn't keep the object alive. It holds one weak count.
template <class T, class B>
class WeakPtr : public DynPtr<T, B> {
  using Base = DynPtr<T, B>;

 public:
  WeakPtr() = default;
  WeakPtr(std::nullptr_t) {}
  /// weak + 1. A null `object` makes an empty pointer, which changes no count.
  WeakPtr(T* object) : WeakPtr(object == nullptr ? none() : WeakPtr(FromObject{}, object)) {}
  /// weak + 1 of the source's record.
  WeakPtr(const WeakPtr& other) : WeakPtr() { take(other); }
  template <class U>
  WeakPtr(const DynPtr<U, B>& other) : WeakPtr() {
    take(other);
  }
  /// weak + 1 of the new record, then weak - 1 of the old one.
  WeakPtr& operator=(const WeakPtr& other) {
    assign(other);
    return *this;
  }
  template <class U>
  WeakPtr& operator=(const DynPtr<U, B>& other) {
    assign(other);
    return *this;
  }
  /// weak - 1; frees the record at 0.
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
    WeakPtr incoming(other); // releases what this one held, under the old serial number
    std::swap(this->id, incoming.id);
    std::swap(this->record, incoming.record);
    std::swap(this->cached, incoming.cached);
  }
};

/// A reference that keeps the object alive. It holds one strong and one weak count.
template <class T, class B>
class StrongPtr : public DynPtr<T, B> {
  using Base = DynPtr<T, B>;

 public:
  StrongPtr() = default;
  StrongPtr(std::nullptr_t) {}
  /// strong + 1 and weak + 1; a null `object` makes an empty pointer. From the first strong pointer on, the
  /// counts own the object, which must have been made with `new`.
  StrongPtr(T* object) : StrongPtr(object == nullptr ? none() : StrongPtr(FromObject{}, object)) {}
  /// strong + 1 and weak + 1 of the source's record; weak + 1 alone where its object is gone.
  StrongPtr(const StrongPtr& other) : StrongPtr() { take(other); }
  template <class U>
  StrongPtr(const DynPtr<U, B>& other) : StrongPtr() {
    take(other);
  }
  /// strong + 1 and weak + 1 of the new record, then strong - 1 and weak - 1 of the old one.
  StrongPtr& operator=(const StrongPtr& other) {
    assign(other);
    return *this;
  }
  template <class U>
  StrongPtr& operator=(const DynPtr<U, B>& other) {
    assign(other);
    return *this;
  }
  /// strong - 1 and weak - 1. Destroys the object where strong falls to 0, frees the record where weak does.
  ~StrongPtr() { release(); }

 private:
  struct FromObject {};
  // Delegates, like every constructor that takes holds: where the deferred construction raises, the
  // destructor releases them.
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
    StrongPtr incoming(other); // releases what this one held, under the old serial number
    std::swap(this->id, incoming.id);
    std::swap(this->record, incoming.record);
    std::swap(this->cached, incoming.cached);
  }

  /// weak + 1 and, where strong isn't negative, strong + 1, in one step: acquire and release. The hold that
  /// finds strong 0 finishes the construction of an object whose family defers it.
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

  /// strong - 1 and weak - 1. While others hold the object this is one step; see `lowerBothUnlessLast`.
  void release() {
    if (this->record == nullptr || this->record->lowerBothUnlessLast()) {
      return;
    }
    if (this->record->strong() > 0) {
      releaseLast();
    }
    this->releaseWeak(typeid(StrongPtr));
  }

  /// Calls the hook, then strong - 1; at 0 marks the record with -111 and destroys the object, unless another
  /// pointer has raised strong meanwhile. Acquire and release: the destructor sees what every former holder
  /// did. weak is unchanged, so the record outlasts the destruction.
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
