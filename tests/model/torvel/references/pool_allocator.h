// SPDX-License-Identifier: BSD-3-Clause
// The pool of a program with tests/model/torvel/references/pool_allocator.cpp
#pragma once

#include <cstddef>

namespace support {

/// Size of the blocks that come from the pool; blocks of every other size come from the C library.
inline constexpr std::size_t pooledBytes = std::size_t{1} << 20;

/// Kind of the pool's memory. Dropped pages of shared memory keep their content; those of a private file
/// mapping have the content of the file again.
enum class PoolMemory { privateAnonymous, sharedAnonymous, privateFile };

/// Selects the memory of the next pool block. A pool block is filled with a byte that isn't zero.
void setPoolMemory(PoolMemory memory);

/// Number of blocks that came from the pool so far.
std::size_t pooledBlockCount();

} // namespace support
