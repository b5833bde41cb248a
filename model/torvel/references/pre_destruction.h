// SPDX-License-Identifier: BSD-3-Clause
// The hook that runs before the last strong hold of an object goes, and how an empty one is recognised.
#pragma once

#include "model/torvel/core/api.h"

#include <cstring>

namespace Torvel {

/// Base of all counted objects; `ReferenceBase` is the only class that derives from it directly.
///
/// It is no template and its hook is not inline, so the empty hook has one address per process. An inline function has
/// one address per shared object (-fvisibility-inlines-hidden), and no comparison across shared objects would hold.
///
/// \threads as the object: reading is safe, the hook is called by one thread
class TORVEL_API PreDestructionHook {
 public:
  PreDestructionHook(const PreDestructionHook&) = delete;
  PreDestructionHook& operator=(const PreDestructionHook&) = delete;

  /// Called by the last strong hold while strong is still 1. Empty here, and then not called: it is the first virtual
  /// function of every family, so the first entry of the object's table identifies it (`hasPreDestruction`).
  virtual void preDestruction();

  /// \return whether a derived class has replaced the empty hook, in whichever shared object it is defined
  bool hasPreDestruction() const { return firstVirtual() != emptyHook; }

 protected:
  PreDestructionHook() = default;
  ~PreDestructionHook() = default;

 private:
  /// First entry of the object's table of virtual functions, as the Itanium C++ ABI lays it out.
  const void* firstVirtual() const {
    const void* const* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(this), sizeof table);
    return *table;
  }

  static const void* const emptyHook;
};

} // namespace Torvel
