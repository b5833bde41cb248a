// SPDX-License-Identifier: BSD-3-Clause
// Pins values of memory arrays: tails, views, texts, creators, save interfaces, the count of arrays made.
#include "tests/arrays/nimbra/every_array.h"

#include <algorithm>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <stdexcept>

using everyarray::samples;
using Nimbra::MemArray;
using Nimbra::MemBase;
using Quillon::PhysicalSpace::point;
using Array = Torvel::StrongPtr<MemArray<1, double>, Torvel::Cacheable>;
using Referencing = Nimbra::ReferencingMemArray<1, double>;
using ReferencingPointer = Torvel::StrongPtr<Referencing, Torvel::Cacheable>;

namespace {

Array doubles(std::vector<double> values) {
  const Torvel::StrongPtr<Torvel::TypedChunk<double>, Torvel::ChunkBase> chunk(
      new Torvel::Chunk<double>(values.size()));
  chunk->values() = std::move(values);
  return new MemArray<1, double>(chunk, chunk->elementCount(), nullptr);
}

TEST(MemArrays, ExtentOfTheWholeChunkLeavesNoTail) {
  const Array array(new MemArray<1, double>(samples<double>(100), 100, nullptr));
  EXPECT_EQ(array->tail, 0U);
  EXPECT_EQ(array->elementCount(), 100U);
}

TEST(MemArrays, ShorterExtentLeavesTheRestAsTail) {
  const Array array(new MemArray<1, double>(samples<double>(100), 95, nullptr));
  EXPECT_EQ(array->tail, 5U);
  EXPECT_EQ(array->elementCount(), 95U);
  EXPECT_EQ(array->count, 100U);
  EXPECT_EQ(array->limit, 100U);
  EXPECT_EQ(array->memorySize(), 800U);
}

TEST(MemArrays, ForeignChunkHasToFitTheExtent) {
  const Array array(new MemArray<1, double>(samples<double>(100), 95, nullptr));
  EXPECT_TRUE(array->arrayOver(samples<double>(95), nullptr));
  EXPECT_EQ(array->arrayOver(samples<double>(100), nullptr).get(), nullptr);
}

TEST(MemArrays, ReplacedContentsHaveToFitTheChunk) {
  const Array array(new MemArray<1, double>(samples<double>(100), 95, nullptr));
  EXPECT_FALSE(array->replaceContents(samples<double>(95)));
  EXPECT_TRUE(array->replaceContents(samples<double>(100)));
}

TEST(MemArrays, DeepCopyKeepsExtentAndTail) {
  const Array array(new MemArray<1, double>(samples<double>(100), 95, nullptr));
  const Array copy(array->deepCopy());
  EXPECT_EQ(copy->elementCount(), 95U);
  EXPECT_EQ(copy->tail, 5U);
}

TEST(MemArrays, FirstAndLastOfOneElementAreTheSame) {
  const Array array = doubles({42.5});
  EXPECT_EQ(array->firstValue(), 42.5);
  EXPECT_EQ(array->lastValue(), 42.5);
}

TEST(MemArrays, LastValueOfAnEmptyExtentIsTheElementAtZero) {
  const Array array(new MemArray<1, double>(samples<double>(3), 0, nullptr));
  EXPECT_EQ(array->lastValue(), 0.0);
  EXPECT_EQ(array->tail, 3U);
}

TEST(MemArrays, LastValueOfAnEmptyRankIsTheElementAtZeroThere) {
  const Torvel::StrongPtr<MemArray<2, double>, Torvel::Cacheable> array(
      new MemArray<2, double>(samples<double>(12), {4, 0}, nullptr));
  EXPECT_EQ(array->lastValue(), 3.0);
}

TEST(MemArrays, ArraysOverOneChunkSeeEachOthersWrites) {
  const auto chunk = samples<double>(3);
  const Array first(new MemArray<1, double>(chunk, 3, nullptr));
  const Array second(new MemArray<1, double>(chunk, 3, nullptr));
  *first->place(1) = 77.0;
  EXPECT_EQ(second->at(1), 77.0);
}

TEST(MemArrays, ChunkOfTheSizeConstructorStartsWithZeros) {
  const Array array(new MemArray<1, double>(4, nullptr));
  EXPECT_THAT(array->typedChunk()->values(), testing::ElementsAre(0, 0, 0, 0));
}

TEST(MemArrays, CopyOfAHyperslabGoesThroughTheView) {
  const Array array = doubles({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
  array->start = 1;
  array->stride = 2;
  const Array copy(array->copyHyperslabAt({1}, {3}, nullptr));
  EXPECT_THAT(copy->typedChunk()->values(), testing::ElementsAre(4, 6, 8));
}

TEST(MemArrays, CopyOfAHyperslabOfRankTwoIsARectangle) {
  const Torvel::StrongPtr<MemArray<2, double>, Torvel::Cacheable> array(
      new MemArray<2, double>(samples<double>(12), {4, 3}, nullptr));
  const Torvel::StrongPtr<MemArray<2, double>, Torvel::Cacheable> copy(
      array->copyHyperslab({1, 1}, {2, 2}, nullptr));
  EXPECT_THAT(copy->typedChunk()->values(), testing::ElementsAre(5, 6, 9, 10));
}

TEST(MemArrays, ShallowViewKeepsExtentAndTail) {
  const Array array(new MemArray<1, double>(samples<double>(100), 95, nullptr));
  const ReferencingPointer view(array->shallowView(0, nullptr));
  EXPECT_EQ(view->elementCount(), 95U);
  EXPECT_EQ(view->tail, 5U);
  EXPECT_EQ(view->available(), 95U);
}

TEST(MemArrays, ShallowViewLiesWhereItsSourceLies) {
  const Array array = doubles({0, 1, 2, 3});
  array->data += 2;
  const ReferencingPointer view(array->shallowView(0, nullptr));
  EXPECT_EQ(view->data, array->data);
}

struct SourceView {
  const char* name;
  Nimbra::HyperslabParameters source;
  std::uint64_t extent, tail;

  friend void PrintTo(const SourceView& test, std::ostream* stream) { *stream << test.name; }
};

class ShallowViews : public testing::TestWithParam<SourceView> {};

TEST_P(ShallowViews, TakeTheirNumbersFromTheSource) {
  const Array array(new MemArray<1, double>(samples<double>(100), GetParam().extent, nullptr));
  static_cast<Nimbra::HyperslabParameters&>(*array) = GetParam().source;
  const ReferencingPointer view(array->shallowView(0, nullptr));
  EXPECT_EQ(view->count, GetParam().source.count);
  EXPECT_EQ(view->limit, GetParam().source.count);
  EXPECT_EQ(view->stride, 1U);
  EXPECT_EQ(view->start, 0U);
  EXPECT_EQ(view->tail, GetParam().tail);
}

INSTANTIATE_TEST_SUITE_P(Sources, ShallowViews,
                         testing::Values(SourceView{"whole", {100, 1, 100, 0, 0}, 100, 0},
                                         SourceView{"startBecomesTail", {100, 1, 100, 10, 5}, 95, 15},
                                         SourceView{"strideBecomesTail", {100, 4, 100, 0, 0}, 100, 75},
                                         SourceView{"shortExtentBecomesTail", {100, 1, 100, 0, 0}, 20, 80},
                                         SourceView{"moreAvailableThanCount", {50, 1, 100, 0, 0}, 60, 0},
                                         SourceView{"nothingAvailable", {100, 1, 100, 90, 90}, 100, 100}),
                         [](const auto& row) { return row.param.name; });

TEST(MemArrays, TextIsTheShortestThatReadsBack) {
  const Array array = doubles({0.1, 1.0, -2.5, 1e300, 1.0 / 3, 123456789.0, -0.0});
  std::vector<std::string> texts;
  for (std::uint64_t i = 0; i < 7; ++i) {
    texts.push_back(array->elementText(i));
  }
  EXPECT_THAT(texts,
              testing::ElementsAre("0.1", "1", "-2.5", "1e+300", "0.3333333333333333", "123456789", "-0"));
}

template <class T>
std::string textOf(const T& element) {
  const Torvel::StrongPtr<Torvel::TypedChunk<T>, Torvel::ChunkBase> chunk(new Torvel::Chunk<T>(0));
  chunk->values().push_back(element);
  const MemBase::Pointer array(new MemArray<1, T>(chunk, 1, nullptr));
  const std::string text = array->elementText(0);
  chunk->values().clear();
  return text;
}

TEST(MemArrays, TextOfEachScalarIsANumber) {
  EXPECT_EQ(textOf<float>(0.1F), "0.1");
  EXPECT_EQ(textOf<short>(-32768), "-32768");
  EXPECT_EQ(textOf<unsigned short>(65535), "65535");
  EXPECT_EQ(textOf<int>(std::numeric_limits<int>::min()), "-2147483648");
  EXPECT_EQ(textOf<unsigned int>(4294967295U), "4294967295");
  EXPECT_EQ(textOf<unsigned long long>(18446744073709551615ULL), "18446744073709551615");
  EXPECT_EQ(textOf<unsigned char>(65), "65");
  EXPECT_EQ(textOf<double>(std::numeric_limits<double>::infinity()), "inf");
}

TEST(MemArrays, TextIsThatOfTheChunkWhateverTheViewShows) {
  const Array array(new MemArray<1, double>(samples<double>(4), 2, nullptr));
  array->start = 1;
  array->stride = 2;
  EXPECT_EQ(array->elementText(1), "1");
  EXPECT_EQ(array->elementText(3), "3");
  EXPECT_EQ(array->elementText(4), "");
}

TEST(MemArrays, TextOfAComposedElementHasABlankBetweenComponents) {
  Quillon::ColourRGBA colour;
  std::copy_n(std::array<unsigned char, 4>{255, 0, 127, 1}.begin(), 4, colour.begin());
  EXPECT_EQ(textOf(point(1.5, -2, 0.1)), "1.5 -2 0.1");
  EXPECT_EQ(textOf(Quillon::PhysicalSpace::vector(1, 2, 3)), "1 2 3");
  EXPECT_EQ(textOf(colour), "255 0 127 1");
}

/// Makes elements that no memory holds.
class FarCreator final : public Nimbra::ElementCreator<double> {
 public:
  ElementCreator<double>* slice(std::uint64_t) override { return this; }
  double element(std::uint64_t index) override { return 1000.0 + static_cast<double>(index); }
};

TEST(MemArrays, CreatorAnswersInPlaceOfTheData) {
  FarCreator far;
  const Array array(new MemArray<1, double>(samples<double>(10), 10, nullptr));
  array->creator = &far;
  array->data = nullptr; // reading it would crash
  EXPECT_EQ(array->firstValue(), 1000.0);
  EXPECT_EQ(array->lastValue(), 1009.0);
  const Array copy(array->copyHyperslabAt({2}, {3}, nullptr));
  EXPECT_THAT(copy->typedChunk()->values(), testing::ElementsAre(1002, 1003, 1004));
}

class Maker : public Nimbra::CreativeArrayBase {};

TEST(MemArrays, RemembersItsCreatorWithoutHoldingIt) {
  Torvel::StrongPtr<Maker, Torvel::Creature> maker(new Maker);
  const Array array(new MemArray<1, double>(samples<double>(1), 1, maker));
  EXPECT_EQ(array->createdBy().get(), maker.get());
  maker = nullptr;
  EXPECT_EQ(array->createdBy().get(), nullptr);
}

TEST(MemArrays, NewOnesRememberTheCreatorThatIsPassed) {
  const Torvel::StrongPtr<Maker, Torvel::Creature> maker(new Maker);
  const Array array(new MemArray<1, double>(samples<double>(4), 4, nullptr));
  for (const MemBase::Pointer& made :
       {array->newArray({2}, maker), array->copyHyperslabAt({0}, {2}, maker),
        array->copyHyperslab({0}, {2}, maker), array->arrayOver(samples<double>(4), maker),
        array->shallowView(0, maker)}) {
    EXPECT_EQ(made->createdBy().get(), maker.get());
  }
}

TEST(MemArrays, PartsKeepTheFixedOrder) {
  MemArray<1, double> array(1, nullptr);
  const Referencing& working = array;
  const std::vector<const void*> places{static_cast<const Nimbra::MemArrayBase<1>*>(&working),
                                        static_cast<const Nimbra::MultiArray<1, double>*>(&working),
                                        &array.data,
                                        &array.creator,
                                        &array.size,
                                        static_cast<const Nimbra::TypedArray<double>*>(&working)};
  EXPECT_TRUE(std::is_sorted(places.begin(), places.end(), std::less<>()));
}

TEST(MemArrays, CountOfArraysGrowsOnlyWhereTheFlagIsSet) {
  const bool before = MemArray<3, short>::registered;
  const int count = MemBase::RegisteredTypes;
  MemArray<3, short>::registered = false;
  { const MemBase::Pointer array(new MemArray<3, short>({1, 1, 1}, nullptr)); }
  EXPECT_EQ(MemBase::RegisteredTypes, count);
  MemArray<3, short>::registered = true;
  { const MemBase::Pointer array(new MemArray<3, short>({1, 1, 1}, nullptr)); }
  EXPECT_EQ(MemBase::RegisteredTypes, count + 1);
  MemArray<3, short>::registered = before;
}

TEST(MemArrays, MakingAnArrayCopiesNothing) {
  const auto chunk = samples<double>(10);
  const std::int64_t bytes = Torvel::ChunkBase::TotalMemsize;
  const Array array(new MemArray<1, double>(chunk, 10, nullptr));
  EXPECT_EQ(Torvel::ChunkBase::TotalMemsize, bytes);
  EXPECT_EQ(array->rawData(), chunk->data());
}

TEST(MemArrays, FirstStrongHoldFinishesAnArray) {
  auto* const bare = new MemArray<1, double>(samples<double>(1), 1, nullptr);
  EXPECT_FALSE(bare->isComplete());
  const MemBase::Pointer held(bare);
  EXPECT_TRUE(bare->isComplete());
}

/// Records the arrays that are passed to it.
class NotingCreator : public Torvel::SaveInterfaceCreator<MemBase> {
 public:
  void createSaveInterface(MemBase& array) override { shown.push_back(&array); }
  std::vector<const MemBase*> shown;
};
class ForeignCreator : public Torvel::SaveInterfaceCreatorBase {};

TEST(SaveInterfaces, EveryArrayIsShownToTheCreatorsOfItsKind) {
  const Torvel::StrongPtr<NotingCreator, Torvel::SaveInterfaceCreatorBase> noting(new NotingCreator);
  Torvel::registerSaveCreator(typeid(MemBase), new ForeignCreator); // is skipped
  Torvel::registerSaveCreator(typeid(MemBase), noting);
  Torvel::registerSaveCreator(typeid(int), noting); // another kind
  const MemBase::Pointer array(new MemArray<1, double>(samples<double>(1), 1, nullptr));
  EXPECT_THAT(noting->shown, testing::ElementsAre(array.get()));
  array->saveInterfaces();
  EXPECT_EQ(noting->shown.size(), 2U);
  noting->shown.clear();
}

} // namespace
