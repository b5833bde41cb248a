// SPDX-License-Identifier: BSD-3-Clause
// Blocks of one size come from a pool in a program that tests/model/torvel/references/pool_allocator.cpp is linked into.
#pragma once

#include <cstddef>

namespace support {

/// Size of the blocks that come from the pool; blocks of every other size come from the C library.
inline constexpr std::size_t pooledBytes = std::size_t{1} << 20;

/// What kind of memory the pool has. Dropping the pages of a shared one changes nothing; dropping those of a private
/// file mapping brings the content of the file back.
enum class PoolMemory { privateAnonymous, sharedAnonymous, privateFile };

/// Makes the next pool block, filled with a byte that isn't zero, of `memory`.
void setPoolMemory(PoolMemory memory);

/// Number of blocks that the pool has given so far.
std::size_t pooledBlockCount();

} // namespace support
