// SPDX-License-Identifier: BSD-3-Clause
// Shows an array to the creators of save interfaces of its kind.
#pragma once

#include "model/torvel/objects/save_registry.h"

namespace Torvel {

/// A creator of save interfaces for objects of kind X.
template <class X>
class TORVEL_API SaveInterfaceCreator : public SaveInterfaceCreatorBase {
 public:
  /// Gives `object` its save interface.
  virtual void createSaveInterface(X& object) = 0;
};

/// Shows one object of kind X to the known creators; creators of another kind are passed over.
template <class X>
class SaveRegistry final : public SaveRegistryBase {
 public:
  explicit SaveRegistry(X& shown) : object(shown) {}

 protected:
  void use(SaveInterfaceCreatorBase& creator) override {
    if (auto* const fitting = dynamic_cast<SaveInterfaceCreator<X>*>(&creator); fitting != nullptr) {
      fitting->createSaveInterface(object);
    }
  }

 private:
  X& object;
};

} // namespace Torvel
