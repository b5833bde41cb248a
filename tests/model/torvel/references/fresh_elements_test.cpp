// SPDX-License-Identifier: BSD-3-Clause
// Elements of a new chunk in memory that the allocator has filled with a pattern.
#include "arrays/quillon/physical_space.h"
#include "model/torvel/references/chunk.h"
#include "tests/model/torvel/references/pattern_allocator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

namespace {

template <class T>
std::vector<unsigned char> freshBytes() {
  const Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase> chunk(new Torvel::Chunk<T>(100));
  const auto* const first = static_cast<const unsigned char*>(chunk->data());
  return {first, first + 100 * sizeof(T)};
}

TEST(FreshElements, PointsVectorsAndColoursAreLeftAsTheAllocatorGivesThem) {
  EXPECT_THAT(freshBytes<Quillon::PhysicalSpace::point>(), testing::Each(support::freshPattern));
  EXPECT_THAT(freshBytes<Quillon::PhysicalSpace::vector>(), testing::Each(support::freshPattern));
  EXPECT_THAT(freshBytes<Quillon::ColourRGBA>(), testing::Each(support::freshPattern));
}

TEST(FreshElements, ScalarsAreZero) {
  EXPECT_THAT(freshBytes<double>(), testing::Each(0));
  EXPECT_THAT(freshBytes<unsigned char>(), testing::Each(0));
}

} // namespace
