// SPDX-License-Identifier: BSD-3-Clause
// Takes pages many at a time before a read writes to them.
//
// Why: a caller's buffer is fresh memory. Where huge pages don't fit, at both of its ends, each small page costs a
// fault in the midst of the kernel's copy, which is dearer than a page asked for: nine of ten faults go, and 3 %
// of a load on one thread.
// What it leans on: MADV_POPULATE_WRITE of Linux 5.14. Elsewhere, where the kernel declines, and without
// RDB2NIMBRA_POPULATE_PAGES (a choice of the configure step) nothing happens here.
#include "container/read/populate.h"

#if RDB2NIMBRA_POPULATE_PAGES && __has_include(<sys/mman.h>)
#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace riegl::rdb::embedded {

void populate([[maybe_unused]] void* to, [[maybe_unused]] std::size_t bytes) {
#ifdef MADV_POPULATE_WRITE
  static const auto pageBytes = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto address = reinterpret_cast<std::uintptr_t>(to);
  const std::uintptr_t begin = address / pageBytes * pageBytes;
  const std::uintptr_t end = (address + bytes) / pageBytes * pageBytes;
  constexpr std::uintptr_t leastPages = 4; // below that a call costs what it saves
  if (end - begin >= leastPages * pageBytes) {
    madvise(reinterpret_cast<void*>(begin), end - begin, MADV_POPULATE_WRITE);
  }
#endif
}

} // namespace riegl::rdb::embedded
