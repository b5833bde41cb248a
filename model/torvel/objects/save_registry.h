// SPDX-License-Identifier: BSD-3-Clause
// Creators of save interfaces, and the walk that passes an object to each of them.
#pragma once

#include "model/torvel/references/pointer.h"

#include <memory>
#include <typeinfo>

namespace Torvel {

/// Makes save interfaces for objects of one kind.
class TORVEL_API SaveInterfaceCreatorBase : public ReferenceBase<SaveInterfaceCreatorBase> {
 public:
  ~SaveInterfaceCreatorBase() override;

 protected:
  SaveInterfaceCreatorBase();
};

/// Registers a creator for the rest of the process.
///
/// \param kind  type of the objects that the creator is for
/// \param creator  held strongly by the table
/// \errors  std::bad_alloc
/// \threads safe
TORVEL_API void
registerSaveCreator(const std::type_info& kind,
                    const StrongPtr<SaveInterfaceCreatorBase, SaveInterfaceCreatorBase>& creator);

/// Passes one object to the creators that are registered for its kind.
class TORVEL_API SaveRegistryBase {
 public:
  SaveRegistryBase();
  virtual ~SaveRegistryBase();
  SaveRegistryBase(const SaveRegistryBase&) = delete;
  SaveRegistryBase& operator=(const SaveRegistryBase&) = delete;

  /// Calls `use` with every creator that is registered for `kind`, in order of registration.
  /// \errors  those of `use`; std::bad_alloc
  /// \threads safe on distinct objects
  void traverseCreators(const std::type_info& kind);

 protected:
  /// Receives one creator.
  virtual void use(SaveInterfaceCreatorBase& creator) = 0;
};

} // namespace Torvel
