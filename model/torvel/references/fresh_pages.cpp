// SPDX-License-Identifier: BSD-3-Clause
// Drops pages in place of writing zeros.
//
// Why: a load makes buffers for 5000000 records before it knows how many there are. Writing zeros to all of them
// touches every page once more than the data does, and touches pages that no record ever reaches.
// What it leans on: on Linux, private anonymous memory reads as zero after MADV_DONTNEED. Every usual allocator's
// large blocks are such memory; because a process may bring another allocator, that is tried out once before it is
// relied on. Without RDB2NIMBRA_LAZY_PAGES (a choice of the configure step) blocks are simply written.
#include "model/torvel/references/fresh_pages.h"

#include <cstdint>
#include <cstring>

#ifdef RDB2NIMBRA_LAZY_PAGES
#include <algorithm>
#include <new>
#include <sys/mman.h>
#include <unistd.h>
#if __has_include(<valgrind/memcheck.h>)
#include <valgrind/memcheck.h>
#else
#define VALGRIND_MAKE_MEM_DEFINED(address, length) static_cast<void>(0)
#endif
#endif

namespace Torvel {

#ifdef RDB2NIMBRA_LAZY_PAGES

namespace {

constexpr std::uintptr_t hugePageBytes = std::uintptr_t{1} << 21;
/// What a block of few records uses; it stays on small pages.
constexpr std::uintptr_t smallUseBytes = std::uintptr_t{1} << 16;

std::uintptr_t upTo(std::uintptr_t address, std::uintptr_t unit) {
  return (address + unit - 1) / unit * unit;
}

/// The whole pages of a block, as addresses; `end` isn't below `begin`.
struct Pages {
  std::uintptr_t begin;
  std::uintptr_t end;

  Pages(void* block, std::size_t bytes) {
    static const auto pageBytes = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto address = reinterpret_cast<std::uintptr_t>(block);
    begin = upTo(address, pageBytes);
    end = std::max(begin, (address + bytes) / pageBytes * pageBytes);
  }

  bool drop() const { return advise(begin, end, MADV_DONTNEED); }

  /// Small pages at the front, where a short block lies, and huge ones behind.
  void preferHugeBehindTheFront() const {
    const std::uintptr_t front = std::min(end, upTo(begin + smallUseBytes, hugePageBytes));
    advise(begin, front, MADV_NOHUGEPAGE);
    advise(front, end, MADV_HUGEPAGE);
  }

 private:
  static bool advise(std::uintptr_t from, std::uintptr_t to, int advice) {
    return from >= to || madvise(reinterpret_cast<void*>(from), to - from, advice) == 0;
  }
};

/// Whether the allocator of this process gives memory that reads as zero once its pages are dropped.
bool droppedPagesReadAsZero() {
  constexpr std::size_t probeBytes = lazyBlockBytes;
  auto* const probe = static_cast<unsigned char*>(::operator new(probeBytes));
  std::memset(probe, 0xa5, probeBytes);
  const Pages pages(probe, probeBytes);
  bool zero = pages.drop();
  VALGRIND_MAKE_MEM_DEFINED(probe, probeBytes);
  const volatile unsigned char* const seen = probe;
  const std::size_t first = pages.begin - reinterpret_cast<std::uintptr_t>(probe);
  const std::size_t last = pages.end - reinterpret_cast<std::uintptr_t>(probe);
  for (std::size_t i = first; zero && i < last; ++i) {
    zero = seen[i] == 0;
  }
  ::operator delete(probe);
  return zero;
}

} // namespace

void makeZeroBlock(void* block, std::size_t bytes) {
  static const bool dropping = droppedPagesReadAsZero();
  const Pages pages(block, bytes);
  if (bytes < lazyBlockBytes || !dropping || !pages.drop()) {
    std::memset(block, 0, bytes);
    return;
  }
  pages.preferHugeBehindTheFront();
  auto* const first = static_cast<unsigned char*>(block);
  const auto address = reinterpret_cast<std::uintptr_t>(block);
  std::memset(first, 0, pages.begin - address);
  std::memset(first + (pages.end - address), 0, address + bytes - pages.end);
  VALGRIND_MAKE_MEM_DEFINED(block, bytes);
}

void releasePages(void* block, std::size_t bytes) {
  Pages(block, bytes).drop();
}

#else

void makeZeroBlock(void* block, std::size_t bytes) {
  std::memset(block, 0, bytes);
}

void releasePages(void*, std::size_t) {}

#endif

} // namespace Torvel
