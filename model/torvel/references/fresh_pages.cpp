// SPDX-License-Identifier: BSD-3-Clause
// Drops pages instead of writing zeros.
//
// A load allocates buffers for 5000000 records before it knows how many there are. Writing zeros to all of
// them touches every page once more than the data does, and touches pages that no record ever reaches. On
// Linux, private anonymous memory reads as zero after MADV_DONTNEED. The global operator new may be replaced
// and may take each size from another place, so every block is asked: MADV_FREE succeeds on private anonymous
// memory only. Without RDB2NIMBRA_LAZY_PAGES (a CMake option) blocks are always written.
#include "model/torvel/references/fresh_pages.h"

#include <cstdint>
#include <cstring>

#ifdef RDB2NIMBRA_LAZY_PAGES
#include <algorithm>
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
/// Front part of a block, all that a block of few records uses; it stays on small pages.
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

  /// \return false where the system keeps a page
  bool drop() const { return advise(begin, end, MADV_DONTNEED); }

  /// Whether all of it is private anonymous memory. Only for dropped pages: it may discard the content of
  /// others.
  bool arePrivateAnonymous() const { return advise(begin, end, MADV_FREE); }

  /// Small pages for the front part, huge ones for the rest.
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

/// One page of memory of its own, filled with a pattern.
class ProbePage {
 public:
  explicit ProbePage(int sharing)
      : bytes(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
        first(mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_ANONYMOUS | sharing, -1, 0)) {
    if (isMapped()) {
      std::memset(first, 0xa5, bytes);
    }
  }
  ProbePage(const ProbePage&) = delete;
  ProbePage& operator=(const ProbePage&) = delete;
  ~ProbePage() {
    if (isMapped()) {
      munmap(first, bytes);
    }
  }

  bool isMapped() const { return first != MAP_FAILED; }
  Pages pages() const { return {first, bytes}; }
  bool startsWithZero() const { return *static_cast<const volatile unsigned char*>(first) == 0; }

 private:
  std::size_t bytes;
  void* first;
};

/// Whether the system does what the page advice promises; emulations may accept every advice and ignore it.
bool adviceIsFollowed() {
  const ProbePage ours(MAP_PRIVATE);
  const ProbePage shared(MAP_SHARED);
  return ours.isMapped() && shared.isMapped() && ours.pages().drop() && ours.startsWithZero() &&
         ours.pages().arePrivateAnonymous() && !shared.pages().arePrivateAnonymous();
}

bool dropToZero(const Pages& pages) {
  static const bool followed = adviceIsFollowed();
  return followed && pages.drop() && pages.arePrivateAnonymous();
}

} // namespace

void makeZeroBlock(void* block, std::size_t bytes) {
  const Pages pages(block, bytes);
  if (bytes < lazyBlockBytes || !dropToZero(pages)) {
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
