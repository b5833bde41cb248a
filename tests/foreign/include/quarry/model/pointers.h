// SPDX-License-Identifier: BSD-3-Clause
// Counted objects, and the pointers to them.
#pragma once

#include "quarry/model/tally.h"

#include <cstddef>
#include <type_traits>
#include <utility>

namespace Torvel {

template <class T, class B>
class DynPtr;

/// Base of all counted objects of one family.
template <class B>
class TORVEL_API ReferenceBase {
 public:
  ReferenceBase(const ReferenceBase&) = delete;
  ReferenceBase& operator=(const ReferenceBase&) = delete;
  virtual ~ReferenceBase() {
    tally_->close();
    tally_->drop();
  }

 protected:
  explicit ReferenceBase(B*)
      : tally_(new quarry::Tally(this, [](void* object) { delete static_cast<ReferenceBase*>(object); })) {}

  void ownItself() noexcept { tally_->own(); }

 private:
  template <class T, class C>
  friend class DynPtr;

  quarry::Tally* tally_;
};

/// What the two pointers share: the tally, which may outlive the object, and the object as a T.
template <class T, class B>
class DynPtr {
 public:
  T* get() const noexcept { return tally_ != nullptr && tally_->live() ? object_ : nullptr; }
  T* operator->() const noexcept { return get(); }
  T& operator*() const noexcept { return *get(); }
  explicit operator bool() const noexcept { return get() != nullptr; }

 protected:
  DynPtr() noexcept = default;
  DynPtr(const DynPtr&) = delete;
  DynPtr& operator=(const DynPtr&) = delete;
  ~DynPtr() = default;

  void take(T* object) noexcept {
    if (object != nullptr) {
      tally_ = static_cast<const ReferenceBase<B>*>(object)->tally_;
      tally_->hold();
      object_ = object;
    }
  }

  /// Only for a source that keeps its object alive meanwhile, or is tested afterwards.
  template <class U>
  void takeFrom(const DynPtr<U, B>& other, U* source) noexcept {
    T* object = nullptr;
    if constexpr (std::is_same_v<T, U>) {
      object = source;
    } else {
      object = dynamic_cast<T*>(source);
    }
    if (object != nullptr) {
      tally_ = other.tally_;
      tally_->hold();
      object_ = object;
    }
  }

  void exchange(DynPtr& other) noexcept {
    std::swap(tally_, other.tally_);
    std::swap(object_, other.object_);
  }

  quarry::Tally* tally_ = nullptr;
  T* object_ = nullptr;

  template <class U, class C>
  friend class DynPtr;

 public:
  /// Owns the object of a pointer for a while, so that a cast of it is safe.
  class Guard {
   public:
    explicit Guard(const DynPtr& pointer) noexcept
        : tally_(pointer.tally_ != nullptr && pointer.tally_->own() ? pointer.tally_ : nullptr),
          object_(tally_ != nullptr ? pointer.object_ : nullptr) {}
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
    ~Guard() {
      if (tally_ != nullptr) {
        tally_->disown();
      }
    }
    T* object() const noexcept { return object_; }
    void keep() noexcept { tally_ = nullptr; } // the owner is passed on

   private:
    quarry::Tally* tally_;
    T* object_;
  };
};

/// Refers to an object without keeping it alive.
template <class T, class B>
class WeakPtr : public DynPtr<T, B> {
 public:
  WeakPtr() noexcept = default;
  WeakPtr(std::nullptr_t) noexcept {}
  WeakPtr(T* object) noexcept { this->take(object); }
  WeakPtr(const WeakPtr& other) noexcept : DynPtr<T, B>() { refer(other); }
  template <class U>
  WeakPtr(const DynPtr<U, B>& other) noexcept {
    refer(other);
  }
  WeakPtr& operator=(WeakPtr other) noexcept {
    this->exchange(other);
    return *this;
  }
  ~WeakPtr() {
    if (this->tally_ != nullptr) {
      this->tally_->drop();
    }
  }

 private:
  /// An object that no one owns yet, or that someone owns: the guard would end the first, so it is not used here.
  template <class U>
  void refer(const DynPtr<U, B>& other) noexcept {
    this->takeFrom(other, other.get());
  }
};

/// Keeps an object alive. One that is not empty is one of the object's owners.
template <class T, class B>
class StrongPtr : public DynPtr<T, B> {
 public:
  StrongPtr() noexcept = default;
  StrongPtr(std::nullptr_t) noexcept {}
  StrongPtr(T* object) noexcept {
    this->take(object);
    if (this->tally_ != nullptr && !this->tally_->own()) {
      clear();
    }
  }
  StrongPtr(const StrongPtr& other) noexcept : DynPtr<T, B>() { share(other); }
  StrongPtr(StrongPtr&& other) noexcept { this->exchange(other); }
  template <class U>
  StrongPtr(const DynPtr<U, B>& other) noexcept {
    share(other);
  }
  StrongPtr& operator=(StrongPtr other) noexcept {
    this->exchange(other);
    return *this;
  }
  ~StrongPtr() {
    if (this->tally_ != nullptr) {
      this->tally_->disown();
      clear();
    }
  }

 private:
  template <class U>
  void share(const DynPtr<U, B>& other) noexcept {
    typename DynPtr<U, B>::Guard guard(other);
    this->takeFrom(other, guard.object());
    if (this->tally_ != nullptr) {
      guard.keep();
    }
  }
  void clear() noexcept {
    this->tally_->drop();
    this->tally_ = nullptr;
    this->object_ = nullptr;
  }
};

/// A T that no count destroys, for static objects.
template <class T>
class Auto : public T {
 public:
  template <class... Arguments>
  explicit Auto(Arguments&&... arguments) : T(static_cast<Arguments&&>(arguments)...) {
    this->ownItself();
  }
};

} // namespace Torvel
