// SPDX-License-Identifier: BSD-3-Clause
// A family of counted objects with a hook, for the tests of the reference scheme.
#pragma once

#include "model/torvel/references/pointer.h"

#include <functional>
#include <string>

namespace counted {

/// A counted object that counts destructions and runs a given function as its pre-destruction hook.
class Item : public Torvel::ReferenceBase<Item> {
 public:
  explicit Item(int* deathCounter = nullptr) : Torvel::ReferenceBase<Item>(this), deaths(deathCounter) {}
  ~Item() override {
    if (atEnd) {
      atEnd();
    }
    if (deaths != nullptr) {
      ++*deaths;
    }
  }
  void preDestruction() override {
    if (hook) {
      hook();
    }
  }

  std::function<void()> hook;  ///< run as the pre-destruction hook
  std::function<void()> atEnd; ///< run by the destructor

 private:
  int* deaths;
};

/// A class to cast an Item to.
class SpecialItem : public Item {
 public:
  using Item::Item;
};

using Strong = Torvel::StrongPtr<Item, Item>;
using Weak = Torvel::WeakPtr<Item, Item>;
using Record = Torvel::CountRecord<Item>;

/// The counts of a pointer's object, for tests that change them.
template <class Pointer>
Record& record(const Pointer& pointer) {
  return const_cast<Record&>(*pointer.counts());
}

} // namespace counted
