// SPDX-License-Identifier: BSD-3-Clause
// Blocks that are made to read as zero, and released pages: their content, and the memory in use.
#include "model/torvel/references/fresh_pages.h"

#include "tests/support/resident_pages.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <sys/mman.h>

namespace {

#ifdef RDB2NIMBRA_LAZY_PAGES
constexpr bool dropsPages = true;
#else
constexpr bool dropsPages = false;
#endif

// A column of doubles of one block, and a size that is no multiple of a page.
constexpr std::size_t columnBytes = 40000000;
constexpr std::size_t oddBytes = 1000003;

/// A block from the allocator in which every byte is set.
class DirtyBlock {
 public:
  explicit DirtyBlock(std::size_t size)
      : bytes(size), first(static_cast<unsigned char*>(::operator new(size))) {
    std::fill(first, first + bytes, 0xa5);
  }
  DirtyBlock(const DirtyBlock&) = delete;
  DirtyBlock& operator=(const DirtyBlock&) = delete;
  ~DirtyBlock() { ::operator delete(first); }

  bool isZero() const {
    return std::all_of(first, first + bytes, [](unsigned char byte) { return byte == 0; });
  }
  std::size_t resident() const { return support::residentBytes(first, bytes); }

  const std::size_t bytes;
  unsigned char* const first;
};

TEST(ZeroBlock, ReadsAsZeroWhateverTheMemoryHeld) {
  for (const std::size_t bytes :
       {std::size_t{1}, Torvel::lazyBlockBytes - 1, Torvel::lazyBlockBytes, oddBytes, columnBytes}) {
    const DirtyBlock block(bytes);
    Torvel::makeZeroBlock(block.first, bytes);
    EXPECT_TRUE(block.isZero()) << bytes;
  }
}

TEST(ZeroBlock, TakesNoMemoryUntilItIsUsed) {
  const DirtyBlock block(columnBytes);
  const std::size_t used = block.resident();
  ASSERT_GT(used, columnBytes - 10000);
  Torvel::makeZeroBlock(block.first, block.bytes);
  EXPECT_EQ(block.resident(), dropsPages ? 0 : used);
}

TEST(ZeroBlock, IsWrittenWhereTheSystemKeepsAPage) {
  const DirtyBlock block(oddBytes);
  const auto pageBytes = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  ASSERT_EQ(mlock(block.first + oddBytes / 2, pageBytes), 0);
  Torvel::makeZeroBlock(block.first, block.bytes);
  EXPECT_TRUE(block.isZero());
  munlock(block.first + oddBytes / 2, pageBytes);
}

TEST(ReleasedPages, TakeNoMemoryAndLeaveWhatStandsBeforeThem) {
  const DirtyBlock block(columnBytes);
  const std::size_t used = block.resident();
  Torvel::releasePages(block.first + oddBytes, columnBytes - oddBytes);
  EXPECT_EQ(std::count(block.first, block.first + oddBytes, 0xa5), std::ptrdiff_t{oddBytes});
  EXPECT_LE(block.resident(), dropsPages ? oddBytes + 4096 : used);
  EXPECT_GE(block.resident(), dropsPages ? oddBytes - 8192 : used);
}

} // namespace
