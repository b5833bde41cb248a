// SPDX-License-Identifier: BSD-3-Clause
// Creators of save interfaces, and the walk that shows an object to each of them.
#pragma once

#include "model/torvel/references/pointer.h"

#include <memory>
#include <typeinfo>

namespace Torvel {

/// Something that can make a save interface for objects of one kind.
class TORVEL_API SaveInterfaceCreatorBase : public ReferenceBase<SaveInterfaceCreatorBase> {
 public:
  ~SaveInterfaceCreatorBase() override;

 protected:
  SaveInterfaceCreatorBase();
};

/// Enters a creator for objects of `kind`, for the rest of the process.
/// \threads safe from any thread
TORVEL_API void
registerSaveCreator(const std::type_info& kind,
                    const StrongPtr<SaveInterfaceCreatorBase, SaveInterfaceCreatorBase>& creator);

/// Shows one object to the creators that are known for its kind.
class TORVEL_API SaveRegistryBase {
 public:
  SaveRegistryBase();
  virtual ~SaveRegistryBase();
  SaveRegistryBase(const SaveRegistryBase&) = delete;
  SaveRegistryBase& operator=(const SaveRegistryBase&) = delete;

  /// Calls `use` with every creator that was registered for `kind`, in order of registration.
  void traverseCreators(const std::type_info& kind);

 protected:
  virtual void use(SaveInterfaceCreatorBase& creator) = 0;
};

} // namespace Torvel
