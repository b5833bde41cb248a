// SPDX-License-Identifier: BSD-3-Clause
// Passes an array to the creators of save interfaces of its kind.
#pragma once

#include "model/torvel/objects/save_registry.h"

namespace Torvel {

/// A creator of save interfaces for objects of kind X.
template <class X>
class TORVEL_API SaveInterfaceCreator : public SaveInterfaceCreatorBase {
 public:
  /// Attaches a save interface to `object`.
  virtual void createSaveInterface(X& object) = 0;
};

/// Passes one object of kind X to the registered creators; creators of another kind are skipped.
///
/// \threads safe on distinct objects
template <class X>
class SaveRegistry final : public SaveRegistryBase {
 public:
  /// \param shown  not owned, outlives the registry
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
