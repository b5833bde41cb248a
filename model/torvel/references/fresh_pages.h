// SPDX-License-Identifier: BSD-3-Clause
// Large blocks that read as zero without being written: the pages are handed back to the system instead.
// Used by model/torvel/references/fresh_elements.h; the portable path stands beside the other one in fresh_pages.cpp
#pragma once

#include "model/torvel/core/api.h"

#include <cstddef>

namespace Torvel {

/// Blocks below this size are zeroed by writing; page tricks don't pay for them.
inline constexpr std::size_t lazyBlockBytes = std::size_t{1} << 18;

/// Makes a block from the global `operator new` read as zero, whatever it held before: recycled heap memory is
/// dirty. On Linux the pages inside are dropped, so that untouched ones cost neither time nor memory, and huge pages
/// are asked for behind the first few thousand bytes, so that a block that is filled costs few faults and one that is
/// barely used stays small. Elsewhere, or where the system refuses, the block is written.
///
/// \param block  `bytes` bytes of which nothing is kept
/// \threads safe on distinct blocks
TORVEL_API void makeZeroBlock(void* block, std::size_t bytes);

/// Gives the memory of the whole pages inside back that hold nothing of use; the addresses stay valid and what is
/// read there later is unspecified.
///
/// \param block  `bytes` bytes from the global `operator new`, or a part of them
/// \threads safe on distinct blocks
TORVEL_API void releasePages(void* block, std::size_t bytes);

} // namespace Torvel
