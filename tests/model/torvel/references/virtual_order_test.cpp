// SPDX-License-Identifier: BSD-3-Clause
// Pins the order of virtual functions, which binaries built earlier rely on. The destructors take two slots.
#include "arrays/nimbra/registration.h"
#include "tests/support/virtual_slot.h"

#include <gtest/gtest.h>

using support::slotOf;
using Torvel::Chunk;
using Torvel::ChunkBase;

namespace {

using Array = Nimbra::ReferencingMemArray<1, double>;
using Typed = Nimbra::TypedArray<double>;
using Nimbra::MemBase;
using Type = Nimbra::NimbraType<double>;

template <class Class, class Result>
auto constant(Result (Class::*member)() const) {
  return member;
}
template <class Class, class Result>
auto changing(Result (Class::*member)()) {
  return member;
}

TEST(VirtualOrder, HookIsTheFirstVirtualOfEveryFamily) {
  EXPECT_EQ(slotOf(&ChunkBase::preDestruction), 0);
  EXPECT_EQ(slotOf(&MemBase::preDestruction), 0);
  EXPECT_EQ(slotOf(&Nimbra::NimbraTypeBase::preDestruction), 0);
  EXPECT_EQ(slotOf(&Torvel::InterfaceBase::preDestruction), 0);
}

TEST(VirtualOrder, ChunkDescribesThenMakes) {
  EXPECT_EQ(slotOf(&Chunk<double>::elementCount), 3);
  EXPECT_EQ(slotOf(&Chunk<double>::elementBytes), 4);
  EXPECT_EQ(slotOf(changing<Chunk<double>, void*>(&Chunk<double>::data)), 5);
  EXPECT_EQ(slotOf(constant<Chunk<double>, const void*>(&Chunk<double>::data)), 6);
  EXPECT_EQ(slotOf(changing<Chunk<double>>(&Chunk<double>::elementType)), 7);
  EXPECT_EQ(slotOf(constant<Chunk<double>>(&Chunk<double>::elementType)), 8);
  EXPECT_EQ(slotOf(&Chunk<double>::elementDescription), 9);
  EXPECT_EQ(slotOf(&Chunk<double>::create), 10);
  EXPECT_EQ(slotOf(&Chunk<double>::clone), 11);
}

TEST(VirtualOrder, ChunkEndsWithTheTypedOperations) {
  EXPECT_EQ(slotOf(changing<Chunk<double>>(&Chunk<double>::values)), 12);
  EXPECT_EQ(slotOf(constant<Chunk<double>>(&Chunk<double>::values)), 13);
  EXPECT_EQ(slotOf(&Chunk<double>::createTyped), 14);
}

TEST(VirtualOrder, MemBaseBeginsWithTheCacheable) {
  EXPECT_EQ(slotOf(&MemBase::memorySize), 3);
  EXPECT_EQ(slotOf(&MemBase::saveInterfaces), 4);
  EXPECT_EQ(slotOf(&MemBase::DomainType), 5);
  EXPECT_EQ(slotOf(&MemBase::CreatorType), 6);
  EXPECT_EQ(slotOf(&MemBase::rank), 7);
  EXPECT_EQ(slotOf(&MemBase::dimensions), 8);
  EXPECT_EQ(slotOf(&MemBase::elementCount), 9);
  EXPECT_EQ(slotOf(&MemBase::elementType), 10);
}

TEST(VirtualOrder, MemBaseGoesOnWithTheElements) {
  EXPECT_EQ(slotOf(&MemBase::iterator), 11);
  EXPECT_EQ(slotOf(&MemBase::elementText), 12);
  EXPECT_EQ(slotOf(&MemBase::rawData), 13);
  EXPECT_EQ(slotOf(&MemBase::chunkBase), 14);
  EXPECT_EQ(slotOf(&MemBase::reservedA), 15);
  EXPECT_EQ(slotOf(&MemBase::reservedB), 16);
}

TEST(VirtualOrder, MemBaseEndsWithWhatMakesArrays) {
  EXPECT_EQ(slotOf(&MemBase::self), 17);
  EXPECT_EQ(slotOf(&MemBase::shallowView), 18);
  EXPECT_EQ(slotOf(&MemBase::copyHyperslab), 19);
  EXPECT_EQ(slotOf(&MemBase::arrayOver), 20);
  EXPECT_EQ(slotOf(&MemBase::replaceContents), 21);
  EXPECT_EQ(slotOf(&MemBase::deepCopy), 22);
}

TEST(VirtualOrder, ArrayBeginsWithItsRank) {
  EXPECT_EQ(slotOf(&Array::rank), 2);
  EXPECT_EQ(slotOf(&Array::extentProduct), 3);
  EXPECT_EQ(slotOf(&Array::newArray), 4);
  EXPECT_EQ(slotOf(&Array::copyHyperslabAt), 5);
  EXPECT_EQ(slotOf(&Array::copyHyperslab), 6);
  EXPECT_EQ(slotOf(&Array::dimensions), 7);
  EXPECT_EQ(slotOf(&Array::nothing), 8);
}

TEST(VirtualOrder, ArrayGoesOnWithItsChunk) {
  EXPECT_EQ(slotOf(&Array::replaceContents), 9);
  EXPECT_EQ(slotOf(&Array::chunkBase), 10);
  EXPECT_EQ(slotOf(&Array::memorySize), 11);
  EXPECT_EQ(slotOf(&Array::elementCount), 12);
  EXPECT_EQ(slotOf(&Array::elementText), 13);
  EXPECT_EQ(slotOf(&Array::saveInterfaces), 14);
  EXPECT_EQ(slotOf(&Array::elementType), 15);
  EXPECT_EQ(slotOf(&Array::iterator), 16);
  EXPECT_EQ(slotOf(&Array::rawData), 17);
}

TEST(VirtualOrder, ArrayEndsWithItsValuesAndCopies) {
  EXPECT_EQ(slotOf(&Array::reservedA), 18);
  EXPECT_EQ(slotOf(&Array::reservedB), 19);
  EXPECT_EQ(slotOf(&Array::firstValue), 20);
  EXPECT_EQ(slotOf(&Array::lastValue), 21);
  EXPECT_EQ(slotOf(constant<Array>(&Array::elements)), 22);
  EXPECT_EQ(slotOf(changing<Array>(&Array::elements)), 23);
  EXPECT_EQ(slotOf(&Array::self), 24);
  EXPECT_EQ(slotOf(&Array::arrayOver), 25);
  EXPECT_EQ(slotOf(&Array::deepCopy), 26);
  EXPECT_EQ(slotOf(&Array::shallowView), 27);
}

TEST(VirtualOrder, TypedArrayBeginsWithItsValues) {
  EXPECT_EQ(slotOf(&Typed::firstValue), 0);
  EXPECT_EQ(slotOf(&Typed::lastValue), 1);
  EXPECT_EQ(slotOf(changing<Typed>(&Typed::elements)), 2);
  EXPECT_EQ(slotOf(constant<Typed>(&Typed::elements)), 3);
  EXPECT_EQ(slotOf(&Typed::typedChunk), 4);
  EXPECT_EQ(slotOf(&Typed::chunkBase), 5);
  EXPECT_EQ(slotOf(&Typed::elementType), 6);
}

TEST(VirtualOrder, TypeObject) {
  EXPECT_EQ(slotOf(&Type::elementType), 3);
  EXPECT_EQ(slotOf(&Type::isElementType), 4);
  EXPECT_EQ(slotOf(&Type::create), 5);
  EXPECT_EQ(slotOf(&Type::firstWord), 6);
  EXPECT_EQ(slotOf(&Type::self), 7);
  EXPECT_EQ(slotOf(&Type::suffix), 8);
  EXPECT_EQ(slotOf(&Type::domainType), 9);
  EXPECT_EQ(slotOf(&Type::reservedA), 10);
  EXPECT_EQ(slotOf(&Type::reservedB), 11);
}

TEST(VirtualOrder, Allocator) {
  EXPECT_EQ(slotOf(&MemBase::Allocator::interfaceType), 3);
  EXPECT_EQ(slotOf(&MemBase::Allocator::apply_const), 4);
  EXPECT_EQ(slotOf(&MemBase::Allocator::apply), 5);
  EXPECT_EQ(slotOf(&MemBase::Allocator::create), 6);
}

TEST(VirtualOrder, ElementCreatorSlicesThenGives) {
  EXPECT_EQ(slotOf(&Nimbra::ElementCreator<double>::slice), 0);
  EXPECT_EQ(slotOf(&Nimbra::ElementCreator<double>::element), 1);
}

} // namespace
