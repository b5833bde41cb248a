// SPDX-License-Identifier: BSD-3-Clause
// Defines the empty hook, once per process.
#include "model/torvel/references/pre_destruction.h"

namespace Torvel {

// An object that is released before this initialisation calls the empty hook, which does nothing.
const void* const PreDestructionHook::emptyHook = PreDestructionHook().firstVirtual();

void PreDestructionHook::preDestruction() {}

} // namespace Torvel
