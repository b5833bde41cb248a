// SPDX-License-Identifier: BSD-3-Clause
// What the module of tests/model/torvel/references/hook_module.cpp makes and sees, as a table of functions.
#pragma once

#include "model/torvel/objects/interface.h"
#include "model/torvel/references/chunk_base.h"

namespace hooks {

/// Functions of a module that is loaded at run time; its one symbol, "hookModule", is such a table.
struct Module {
  /// A new object that keeps the empty pre-destruction hook, of a class that only the module has.
  Torvel::InterfaceBase* (*makePlain)();
  /// A new object whose pre-destruction hook raises `calls` by 1.
  Torvel::InterfaceBase* (*makeHooked)(int& calls);
  /// A new chunk of an element type that only the module uses.
  Torvel::ChunkBase* (*makeChunk)();
  /// Whether code of the module sees a pre-destruction hook other than the empty one.
  bool (*seesHook)(const Torvel::InterfaceBase& object);
  /// Releases the last strong hold in code of the module.
  void (*release)(Torvel::StrongPtr<Torvel::InterfaceBase, Torvel::InterfaceBase>& last);
};

} // namespace hooks
