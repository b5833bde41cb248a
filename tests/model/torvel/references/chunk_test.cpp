// SPDX-License-Identifier: BSD-3-Clause
// Chunks: their elements, the byte count of the process, copies, and the interfaces that give access to them.
#include "model/torvel/references/chunk.h"

#include "arrays/quillon/physical_space.h"

#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>

using Quillon::ColourRGBA;
using Quillon::PhysicalSpace::point;
using Torvel::Chunk;
using Torvel::ChunkBase;
using Torvel::StrongPtr;
using Torvel::TypedChunk;
using Torvel::TypedChunkBase;
using Vector3 = Quillon::PhysicalSpace::vector;
using Pointer = StrongPtr<ChunkBase, ChunkBase>;

namespace {

std::int64_t bytesAddedBy(const std::function<void()>& work) {
  const std::int64_t before = ChunkBase::TotalMemsize;
  work();
  return ChunkBase::TotalMemsize - before;
}

template <class Work>
std::string failureText(Work work) {
  try {
    work();
  } catch (const std::length_error& error) {
    return error.what();
  }
  return "no failure";
}

template <class T>
T someElement() {
  T element{};
  if constexpr (std::is_trivially_copyable_v<T>) {
    std::memset(static_cast<void*>(&element), 7, sizeof element);
  }
  return element;
}

template <class T>
class EveryChunk : public testing::Test {};
using ChunkTypes = testing::Types<double, float, int, unsigned int, short, unsigned short, unsigned char,
                                  unsigned long long, std::string, point, Vector3, ColourRGBA>;
TYPED_TEST_SUITE(EveryChunk, ChunkTypes);

TYPED_TEST(EveryChunk, ReturnsItsElements) {
  const Pointer chunk(new Chunk<TypeParam>(7));
  const ChunkBase& asRead = *chunk;
  EXPECT_EQ(chunk->elementCount(), 7U);
  EXPECT_EQ(chunk->elementBytes(), sizeof(TypeParam));
  EXPECT_EQ(chunk->elementType(), typeid(TypeParam));
  EXPECT_EQ(asRead.elementType(), typeid(TypeParam));
  EXPECT_EQ(chunk->data(), asRead.data());
}

TYPED_TEST(EveryChunk, DescribesOneElement) {
  const Torvel::ElementDescription description = Pointer(new Chunk<TypeParam>(7))->elementDescription();
  EXPECT_EQ(*description.type, typeid(TypeParam));
  EXPECT_EQ(description.elementBytes, sizeof(TypeParam));
  EXPECT_EQ(description.count, 1U);
  EXPECT_EQ(description.reserved, 0U);
}

TYPED_TEST(EveryChunk, BytesGrowAtConstructionAndShrinkAtDestruction) {
  EXPECT_EQ(bytesAddedBy([] {
              Pointer chunk;
              EXPECT_EQ(bytesAddedBy([&] { chunk = new Chunk<TypeParam>(100); }),
                        static_cast<std::int64_t>(100 * sizeof(TypeParam)));
            }),
            0);
}

TYPED_TEST(EveryChunk, CreateMakesAChunkOfTheSameType) {
  const Pointer made = Pointer(new Chunk<TypeParam>(1))->create(5, false);
  EXPECT_EQ(made->elementCount(), 5U);
  EXPECT_EQ(made->elementType(), typeid(TypeParam));
}

TYPED_TEST(EveryChunk, CreateWithRoomOnlyStaysEmpty) {
  const StrongPtr<TypedChunk<TypeParam>, ChunkBase> source(new Chunk<TypeParam>(1));
  EXPECT_EQ(bytesAddedBy([&] {
              const auto roomy = source->createTyped(5, true);
              EXPECT_EQ(roomy->elementCount(), 0U);
              EXPECT_GE(roomy->values().capacity(), 5U);
            }),
            0);
}

TYPED_TEST(EveryChunk, CloneHasTheSameElementsInMemoryOfItsOwn) {
  const StrongPtr<Chunk<TypeParam>, ChunkBase> chunk(new Chunk<TypeParam>(0));
  chunk->values().assign(3, someElement<TypeParam>());
  const StrongPtr<Chunk<TypeParam>, ChunkBase> copy(chunk->clone());
  EXPECT_NE(copy->data(), chunk->data());
  EXPECT_TRUE(copy->values() == chunk->values());
  chunk->values().clear(); // the assigned elements were never added to the sum
}

TYPED_TEST(EveryChunk, CloneCountsItsBytes) {
  const Pointer chunk(new Chunk<TypeParam>(3));
  Pointer copy;
  EXPECT_EQ(bytesAddedBy([&] { copy = chunk->clone(); }), static_cast<std::int64_t>(3 * sizeof(TypeParam)));
}

TYPED_TEST(EveryChunk, CloneOfAnEmptyChunkIsEmpty) {
  const Pointer copy = Pointer(new Chunk<TypeParam>(0))->clone();
  EXPECT_EQ(copy->elementCount(), 0U);
  EXPECT_EQ(copy->data(), nullptr);
}

TYPED_TEST(EveryChunk, RefusesMoreElementsThanAVectorTakes) {
  const std::size_t tooMany = std::vector<TypeParam>().max_size() + 1;
  EXPECT_EQ(failureText([=] { Chunk<TypeParam> chunk(tooMany); }),
            "cannot create std::vector larger than max_size()");
}

TYPED_TEST(EveryChunk, CreateRefusesMoreElementsThanAVectorTakes) {
  const Pointer chunk(new Chunk<TypeParam>(0));
  const std::size_t tooMany = std::vector<TypeParam>().max_size() + 1;
  EXPECT_EQ(failureText([&] { chunk->create(tooMany, false); }),
            "cannot create std::vector larger than max_size()");
  EXPECT_EQ(failureText([&] { chunk->create(tooMany, true); }), "vector::reserve");
}

template <class T>
class ScalarChunk : public testing::Test {};
using ScalarTypes = testing::Types<double, float, int, unsigned int, short, unsigned short, unsigned char,
                                   unsigned long long>;
TYPED_TEST_SUITE(ScalarChunk, ScalarTypes);

TYPED_TEST(ScalarChunk, StartsWithZeros) {
  const StrongPtr<Chunk<TypeParam>, ChunkBase> chunk(new Chunk<TypeParam>(1000));
  EXPECT_THAT(chunk->values(), testing::Each(TypeParam{0}));
}

TEST(Chunks, CloneCopiesNumbersAndTexts) {
  const StrongPtr<Chunk<double>, ChunkBase> numbers(new Chunk<double>(2));
  numbers->values() = {1.5, -2.5};
  const StrongPtr<Chunk<std::string>, ChunkBase> texts(new Chunk<std::string>(2));
  texts->values() = {"one", "two"};
  EXPECT_THAT((StrongPtr<Chunk<double>, ChunkBase>(numbers->clone())->values()),
              testing::ElementsAre(1.5, -2.5));
  EXPECT_THAT((StrongPtr<Chunk<std::string>, ChunkBase>(texts->clone())->values()),
              testing::ElementsAre("one", "two"));
}

TEST(Chunks, EmptyChunkHasNoDataAndCountsNoBytes) {
  EXPECT_EQ(bytesAddedBy([] {
              const StrongPtr<Chunk<double>, ChunkBase> chunk(new Chunk<double>(0));
              EXPECT_EQ(chunk->data(), nullptr);
              EXPECT_EQ(static_cast<const ChunkBase&>(*chunk).data(), nullptr);
              EXPECT_EQ(chunk->elementCount(), 0U);
              EXPECT_EQ(bytesAddedBy([] { const Chunk<double> another(0); }), 0);
            }),
            0);
}

TEST(Chunks, CutChunkLeavesTheDifferenceInTheByteCount) {
  EXPECT_EQ(bytesAddedBy([] {
              const StrongPtr<Chunk<double>, ChunkBase> chunk(new Chunk<double>(5000000));
              chunk->values().resize(10);
            }),
            (5000000 - 10) * 8);
}

TEST(Chunks, CuttingDownDoesNotMoveTheElements) {
  const StrongPtr<Chunk<double>, ChunkBase> chunk(new Chunk<double>(1000));
  const void* const before = chunk->data();
  chunk->values().resize(10);
  EXPECT_EQ(chunk->data(), before);
}

TEST(Chunks, DataIsTheVectorsFirstElement) {
  Chunk<double> chunk(3);
  chunk.values()[0] = 4.25;
  EXPECT_EQ(chunk.data(), &chunk.values()[0]);
  EXPECT_EQ(*static_cast<double*>(chunk.data()), 4.25);
}

/// Whether a chunk of T can be cast to Face.
template <class T, class Face>
bool reaches() {
  const Pointer chunk(new Chunk<T>(2));
  const StrongPtr<Face, ChunkBase> face(chunk);
  return face && face.get() == dynamic_cast<Face*>(chunk.get());
}

template <class... Faces>
struct Chain {};

template <class T, class... Faces>
void expectReaches(Chain<Faces...>) {
  EXPECT_THAT((std::vector<bool>{reaches<T, Faces>()...}), testing::Each(true));
}

template <class... Base>
using Domain3D = Quillon::DomainVector<Quillon::Column<3, double>, Quillon::Cartesian3D, double>;

TEST(ChunkFaces, PointsAreReachedThroughThreeDoubles) {
  using Three = Quillon::FixedArray<double, 3>;
  expectReaches<point>(Chain<TypedChunk<point>, TypedChunk<Three>, TypedChunkBase<Three>>());
  static_assert(std::is_base_of_v<TypedChunk<Three>, TypedChunk<point>>);
}

TEST(ChunkFaces, VectorsAreReachedThroughEachOfTheirBases) {
  using Three = Quillon::FixedArray<double, 3>;
  expectReaches<Vector3>(
      Chain<TypedChunk<Vector3>, TypedChunk<Domain3D<>>, TypedChunk<Quillon::Column<3, double>>,
            TypedChunk<Quillon::Matrix<3, 1, double>>, TypedChunk<Quillon::Vector<double, 3>>,
            TypedChunk<Three>, TypedChunkBase<Three>>());
  static_assert(std::is_base_of_v<TypedChunk<Quillon::Column<3, double>>, TypedChunk<Domain3D<>>>);
}

TEST(ChunkFaces, ColoursAreReachedThroughFourBytes) {
  using Four = Quillon::FixedArray<unsigned char, 4>;
  expectReaches<ColourRGBA>(Chain<TypedChunk<ColourRGBA>, TypedChunk<Quillon::Vector<unsigned char, 4>>,
                                  TypedChunk<Four>, TypedChunkBase<Four>>());
  static_assert(std::is_base_of_v<TypedChunk<Quillon::Vector<unsigned char, 4>>, TypedChunk<ColourRGBA>>);
}

TEST(ChunkFaces, ScalarsAreReachedAsThemselvesOnly) {
  expectReaches<double>(Chain<TypedChunk<double>, TypedChunkBase<double>>());
  EXPECT_FALSE((reaches<double, TypedChunk<float>>()));
  EXPECT_FALSE((reaches<double, TypedChunk<point>>()));
}

TEST(ChunkFaces, PointsAreNoVectors) {
  EXPECT_FALSE((reaches<point, TypedChunk<Vector3>>()));
  EXPECT_FALSE((reaches<point, TypedChunk<Quillon::Column<3, double>>>()));
}

TEST(ChunkFaces, BaseLayoutShowsTheElements) {
  const StrongPtr<Chunk<point>, ChunkBase> chunk(new Chunk<point>(0));
  chunk->values() = {point(1, 2, 3), point(4, 5, 6)};
  const StrongPtr<TypedChunkBase<Quillon::FixedArray<double, 3>>, ChunkBase> face(chunk);
  ASSERT_EQ(face->elements().size(), 2U);
  EXPECT_EQ(face->elements()[1][2], 6.0);
}

} // namespace
