// SPDX-License-Identifier: BSD-3-Clause
// What an import calls for each column and block before the block's memory goes to the grid.
#pragma once

#include "model/torvel/references/chunk_base.h"

#include <functional>
#include <string>

namespace Riegl {

/// Called on the thread of the load, once per column and block.
///
/// \param 1  the block's memory, cut to its length; changes in place reach the grid
/// \param 2  name of the field
/// \param 3  whether the database's time system is UTC
/// \errors  what it raises ends the load; the text of a standard exception becomes the load's result
using ChunkCallback = std::function<void(const Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>&,
                                         const std::string&, const bool&)>;

} // namespace Riegl
