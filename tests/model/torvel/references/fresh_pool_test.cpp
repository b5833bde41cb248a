// SPDX-License-Identifier: BSD-3-Clause
// New chunks hold zeros, whatever memory the allocator takes for their size.
#include "model/torvel/references/chunk.h"
#include "tests/model/torvel/references/pool_allocator.h"
#include "tests/support/resident_pages.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

using support::PoolMemory;

constexpr std::size_t count = support::pooledBytes / sizeof(double);

bool isZero(const Torvel::Chunk<double>& chunk) {
  return std::all_of(chunk.begin(), chunk.end(), [](double value) { return value == 0; });
}

class FreshPool : public testing::TestWithParam<PoolMemory> {
 protected:
  void SetUp() override { support::setPoolMemory(GetParam()); }
};

TEST_P(FreshPool, ScalarsAreZero) {
  { const Torvel::Chunk<double> ofAnotherSize(2 * count); }
  const std::size_t before = support::pooledBlockCount();
  const Torvel::Chunk<double> chunk(count);
  EXPECT_EQ(support::pooledBlockCount(), before + 1);
  EXPECT_TRUE(isZero(chunk));
}

INSTANTIATE_TEST_SUITE_P(Kinds, FreshPool,
                         testing::Values(PoolMemory::privateAnonymous, PoolMemory::sharedAnonymous,
                                         PoolMemory::privateFile));

TEST(FreshBlock, OfPrivateMemoryTakesNoMemoryUntilItIsUsed) {
#ifdef RDB2NIMBRA_LAZY_PAGES
  constexpr std::size_t resident = 0;
#else
  constexpr std::size_t resident = support::pooledBytes;
#endif
  support::setPoolMemory(PoolMemory::privateAnonymous);
  const Torvel::Chunk<double> chunk(count);
  EXPECT_EQ(support::residentBytes(chunk.data(), support::pooledBytes), resident);
}

} // namespace
