// SPDX-License-Identifier: BSD-3-Clause
// Makes large blocks read as zero without writing them, and releases the pages of unused memory.
#pragma once

#include "model/torvel/core/api.h"

#include <cstddef>

namespace Torvel {

/// Blocks below this size, in bytes, are zeroed by writing: the system calls would cost more.
inline constexpr std::size_t lazyBlockBytes = std::size_t{1} << 18;

/// Makes a block read as zero, whatever it held before: recycled heap memory is dirty.
///
/// On Linux the pages inside are dropped, so that untouched ones cost neither time nor memory, and huge pages
/// are requested behind the first 64 KiB, so that filling a block causes few page faults and a block of few
/// records stays small. A block whose memory isn't private and anonymous throughout, or whose pages the
/// system keeps, is written; so is every block on other systems.
///
/// \param block  `bytes` bytes, owned by the caller, from the global `operator new`; their content is lost
/// \param bytes  any size
/// \errors  none
/// \threads safe on distinct blocks
TORVEL_API void makeZeroBlock(void* block, std::size_t bytes);

/// Releases the pages that lie whole in the block (Linux: MADV_DONTNEED; nothing elsewhere). The addresses
/// stay valid; what is read there later is unspecified.
///
/// \param block  `bytes` bytes, owned by the caller, from the global `operator new`, or a part of them
/// \param bytes  any size
/// \errors  none
/// \threads safe on distinct blocks
TORVEL_API void releasePages(void* block, std::size_t bytes);

} // namespace Torvel
