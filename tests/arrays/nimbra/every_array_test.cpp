// SPDX-License-Identifier: BSD-3-Clause
// Pins every operation of a memory array, for each of the eleven element types and the ranks 1 to 4.
#include "tests/arrays/nimbra/every_array.h"

#include <gtest/gtest.h>
#include <stdexcept>

using namespace everyarray;

namespace {

TEST(EveryArray, ReturnsRankAndExtents) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer&) {
    EXPECT_EQ(array->rank(), kind.rank);
    const DynamicSize dimensions = array->dimensions();
    ASSERT_EQ(dimensions.rank, kind.rank);
    for (int i = 0; i < kind.rank; ++i) {
      EXPECT_EQ(dimensions.extents[i], static_cast<std::uint64_t>(i + 2));
    }
  });
}

TEST(EveryArray, CountsItsElementsAndBytes) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer& chunk) {
    EXPECT_EQ(array->elementCount(), chunk->elementCount());
    EXPECT_EQ(array->memorySize(), chunk->elementCount() * kind.elementBytes);
  });
}

TEST(EveryArray, SharesItsChunkWithoutACopy) {
  forEveryArray([](const Kind&, const MemBase::Pointer& array, const ChunkPointer& chunk) {
    EXPECT_EQ(array->rawData(), chunk->data());
    EXPECT_EQ(array->chunkBase().get(), chunk.get());
    EXPECT_EQ(chunk.counts()->strong(), 2);
  });
}

TEST(EveryArray, ReturnsItsElementType) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer&) {
    EXPECT_EQ(array->elementType(), *kind.type);
    EXPECT_EQ(array->typeIndex().typeName, Torvel::Typename(*kind.type));
    EXPECT_EQ(array->typeIndex().elementBytes, static_cast<int>(kind.elementBytes));
  });
}

TEST(EveryArray, AnswersTheSameThroughEachInterface) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer&) {
    EXPECT_TRUE(kind.facesAgree(array));
  });
}

TEST(EveryArray, ViewsTheWholeChunk) {
  forEveryArray([](const Kind&, const MemBase::Pointer& array, const ChunkPointer& chunk) {
    const Nimbra::HyperslabParameters& view = *array->iterator();
    EXPECT_EQ(view.count, chunk->elementCount());
    EXPECT_EQ(view.stride, 1U);
    EXPECT_EQ(view.limit, chunk->elementCount());
    EXPECT_EQ(view.start, 0U);
    EXPECT_EQ(view.tail, 0U);
  });
}

TEST(EveryArray, FirstAndLastValueAreTheEnds) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer& chunk) {
    EXPECT_TRUE(kind.endsAre(array, elementAt(chunk, 0), elementAt(chunk, chunk->elementCount() - 1)));
  });
}

TEST(EveryArray, ReservedAnswersAreNothing) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer&) {
    EXPECT_TRUE(kind.nothingThere(array));
  });
}

TEST(EveryArray, SelfIsTheSameObject) {
  forEveryArray([](const Kind&, const MemBase::Pointer& array, const ChunkPointer&) {
    const MemBase::Pointer self = array->self();
    EXPECT_EQ(self.get(), array.get());
    EXPECT_EQ(array.counts()->strong(), 2);
  });
}

TEST(EveryArray, NewArrayHasAChunkOfItsOwn) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer& chunk) {
    const MemBase::Pointer fresh = kind.makeNew(array, smallExtents(kind.rank, 1));
    EXPECT_EQ(fresh->rank(), kind.rank);
    EXPECT_EQ(fresh->elementCount(), totalOf(smallExtents(kind.rank, 1)));
    EXPECT_NE(fresh->chunkBase().get(), chunk.get());
    EXPECT_TRUE(kind.makesChunks(fresh));
  });
}

TEST(EveryArray, NewArrayBeyondAVectorIsRefused) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer&) {
    try {
      kind.makeNew(array, allOf(kind.rank, ~std::uint64_t{0}));
      FAIL() << "no failure";
    } catch (const std::length_error& error) {
      EXPECT_STREQ(error.what(), "cannot create std::vector larger than max_size()");
    }
  });
}

TEST(EveryArray, CopyOfAPartHoldsItsElements) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer& chunk) {
    const DynamicSize part = smallExtents(kind.rank, -1);
    const MemBase::Pointer copy = kind.copyPart(array, allOf(kind.rank, 1), part);
    // The element (1, 1, 1, 1) lies at 1 + 2 * (1 + 3 * (1 + 4 * 1)); lower ranks end the sum earlier.
    const std::uint64_t first[] = {1, 3, 9, 33};
    EXPECT_EQ(copy->elementCount(), totalOf(part));
    EXPECT_TRUE(kind.endsAre(copy, elementAt(chunk, first[kind.rank - 1]),
                             elementAt(chunk, chunk->elementCount() - 1)));
  });
}

TEST(EveryArray, CopyOfTheWholeIsEqualInMemoryOfItsOwn) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer& chunk) {
    const MemBase::Pointer copy = array->copyHyperslab(allOf(kind.rank, 0), array->dimensions(), nullptr);
    ASSERT_TRUE(copy);
    EXPECT_TRUE(sameElements(copy->chunkBase(), chunk));
    EXPECT_NE(copy->rawData(), array->rawData());
  });
}

TEST(EveryArray, CopyOfAHyperslabOfAnotherRankIsNull) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer&) {
    const DynamicSize own = array->dimensions();
    const DynamicSize other = allOf(kind.rank % 4 + 1, 0);
    EXPECT_EQ(array->copyHyperslab(other, own, nullptr).get(), nullptr);
    EXPECT_EQ(array->copyHyperslab(own, other, nullptr).get(), nullptr);
    EXPECT_EQ(array->copyHyperslab(DynamicSize(), own, nullptr).get(), nullptr);
  });
}

TEST(EveryArray, ReplacingContentsTakesTheElementsAndKeepsTheMemory) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer& chunk) {
    const ChunkPointer source = kind.chunk(chunk->elementCount());
    std::memset(source->data(), 1, array->memorySize());
    EXPECT_FALSE(sameElements(chunk, source));
    EXPECT_TRUE(array->replaceContents(source));
    EXPECT_TRUE(sameElements(chunk, source));
    EXPECT_EQ(array->rawData(), chunk->data());
  });
}

TEST(EveryArray, ReplacingContentsThatDoNotFitChangesNothing) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer& chunk) {
    const ChunkPointer before = chunk->clone();
    EXPECT_FALSE(array->replaceContents(kind.chunk(chunk->elementCount() + 1)));
    EXPECT_FALSE(array->replaceContents(new Torvel::Chunk<std::string>(chunk->elementCount())));
    EXPECT_FALSE(array->replaceContents(nullptr));
    EXPECT_TRUE(sameElements(chunk, before));
  });
}

TEST(EveryArray, ArrayOverAForeignChunkSharesIt) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer& chunk) {
    const ChunkPointer foreign = kind.chunk(chunk->elementCount());
    const MemBase::Pointer made = array->arrayOver(foreign, nullptr);
    ASSERT_TRUE(made);
    EXPECT_EQ(made->chunkBase().get(), foreign.get());
    EXPECT_EQ(made->rank(), kind.rank);
    EXPECT_EQ(made->elementCount(), array->elementCount());
  });
}

TEST(EveryArray, ArrayOverAChunkThatDoesNotFitIsNull) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer& chunk) {
    EXPECT_EQ(array->arrayOver(kind.chunk(chunk->elementCount() - 1), nullptr).get(), nullptr);
    EXPECT_EQ(array->arrayOver(new Torvel::Chunk<std::string>(chunk->elementCount()), nullptr).get(),
              nullptr);
    EXPECT_EQ(array->arrayOver(nullptr, nullptr).get(), nullptr);
  });
}

TEST(EveryArray, DeepCopyHasEqualElementsInAChunkOfItsOwn) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer& chunk) {
    const MemBase::Pointer copy = array->deepCopy();
    ASSERT_TRUE(copy);
    EXPECT_NE(copy->chunkBase().get(), chunk.get());
    EXPECT_TRUE(sameElements(copy->chunkBase(), chunk));
    EXPECT_EQ(copy->rank(), kind.rank);
  });
}

TEST(EveryArray, ShallowViewSharesTheChunk) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer& chunk) {
    const MemBase::Pointer view = array->shallowView(0, nullptr);
    ASSERT_TRUE(view);
    EXPECT_EQ(view->chunkBase().get(), chunk.get());
    EXPECT_EQ(view->rawData(), array->rawData());
    EXPECT_EQ(view->elementCount(), array->elementCount());
    EXPECT_FALSE(kind.makesChunks(view)); // a ReferencingMemArray, which makes no chunks
  });
}

TEST(EveryArray, ShallowViewOfPositiveDepthIsNull) {
  forEveryArray([](const Kind&, const MemBase::Pointer& array, const ChunkPointer&) {
    EXPECT_EQ(array->shallowView(1, nullptr).get(), nullptr);
    EXPECT_TRUE(array->shallowView(-1, nullptr));
  });
}

TEST(EveryArray, TextOfAnElementBeyondTheChunkIsEmpty) {
  forEveryArray([](const Kind&, const MemBase::Pointer& array, const ChunkPointer& chunk) {
    EXPECT_EQ(array->elementText(chunk->elementCount()), "");
    EXPECT_EQ(array->elementText(1).substr(0, 1), "1");
  });
}

TEST(EveryArray, WithoutAChunkAnswersEmpty) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer&, const ChunkPointer&) {
    const MemBase::Pointer bare = kind.make(nullptr, allOf(kind.rank, 0));
    EXPECT_EQ(bare->memorySize(), 0U);
    EXPECT_EQ(bare->rawData(), nullptr);
    EXPECT_EQ(bare->elementText(0), "");
    EXPECT_EQ(bare->deepCopy().get(), nullptr);
    EXPECT_FALSE(bare->replaceContents(kind.chunk(0)));
  });
}

TEST(EveryArray, ReleasesItsChunkWhenItDies) {
  forEveryArray([](const Kind& kind, const MemBase::Pointer& array, const ChunkPointer& chunk) {
    const ChunkPointer foreign = kind.chunk(chunk->elementCount());
    { const MemBase::Pointer other = array->arrayOver(foreign, nullptr); }
    EXPECT_EQ(foreign.counts()->strong(), 1);
  });
}

} // namespace
