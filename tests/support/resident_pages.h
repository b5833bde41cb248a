// SPDX-License-Identifier: BSD-3-Clause
// Counts the bytes of a block that are resident in memory.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace support {

/// Bytes of the resident pages that lie whole in the block.
inline std::size_t residentBytes(const void* block, std::size_t bytes) {
  const auto pageBytes = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto address = reinterpret_cast<std::uintptr_t>(block);
  const std::uintptr_t begin = (address + pageBytes - 1) / pageBytes * pageBytes;
  const std::uintptr_t pages = ((address + bytes) / pageBytes) - begin / pageBytes;
  std::vector<unsigned char> flags(pages);
  mincore(reinterpret_cast<void*>(begin), pages * pageBytes, flags.data());
  const auto present =
      std::count_if(flags.begin(), flags.end(), [](unsigned char flag) { return (flag & 1) != 0; });
  return static_cast<std::size_t>(present) * pageBytes;
}

} // namespace support
