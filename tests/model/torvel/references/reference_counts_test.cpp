// SPDX-License-Identifier: BSD-3-Clause
// The reference scheme: what each pointer does to the counts, and when an object and its record end.
#include "tests/model/torvel/references/counted_item.h"

#include <gtest/gtest.h>
#include <new>

using counted::Item;
using counted::SpecialItem;
using counted::Strong;
using counted::Weak;

namespace {

template <class Pointer>
void expectCounts(const Pointer& pointer, int strong, int weak) {
  EXPECT_EQ(pointer.counts()->strong(), strong);
  EXPECT_EQ(pointer.counts()->weak(), weak);
}

TEST(ReferenceCounts, NewObjectHasNoHoldButItsOwnWeakLink) {
  const Item item;
  EXPECT_EQ(item.counts().strong(), 0);
  EXPECT_EQ(item.counts().weak(), 1);
  EXPECT_EQ(item.counts().object(), &item);
}

TEST(ReferenceCounts, StrongPointerTakesOneOfEach) {
  const Strong strong(new Item);
  expectCounts(strong, 1, 2);
}

TEST(ReferenceCounts, WeakPointerTakesOneWeakHold) {
  const Strong strong(new Item);
  const Weak weak(strong);
  expectCounts(strong, 1, 3);
}

TEST(ReferenceCounts, CopyOfAStrongPointerTakesOneOfEach) {
  const Strong strong(new Item);
  {
    const Strong copy(strong);
    expectCounts(strong, 2, 3);
  }
  expectCounts(strong, 1, 2);
}

TEST(ReferenceCounts, AssignmentGivesTheOldObjectBack) {
  int deaths = 0;
  Strong strong(new Item(&deaths));
  const Strong other(new Item);
  strong = other;
  EXPECT_EQ(deaths, 1);
  expectCounts(other, 2, 3);
}

TEST(ReferenceCounts, AssignmentToItselfChangesNoCount) {
  Strong strong(new Item);
  const Strong& same = strong;
  strong = same;
  expectCounts(strong, 1, 2);
}

TEST(ReferenceCounts, ObjectDiesWithTheLastStrongPointer) {
  int deaths = 0;
  Strong first(new Item(&deaths));
  Strong second(first);
  first = nullptr;
  EXPECT_EQ(deaths, 0);
  second = nullptr;
  EXPECT_EQ(deaths, 1);
}

TEST(ReferenceCounts, WeakPointerOutlivesTheObject) {
  int deaths = 0;
  Strong strong(new Item(&deaths));
  const Weak weak(strong);
  strong = nullptr;
  EXPECT_EQ(deaths, 1);
  EXPECT_EQ(weak.get(), nullptr);
  EXPECT_EQ(weak.counts()->object(), nullptr);
  expectCounts(weak, -111, 1); // freed with `weak`; the leak check guards it
}

TEST(ReferenceCounts, DestructionByHandLeavesTheEndMark) {
  auto* const item = new Item;
  const Strong strong(item);
  delete item;
  expectCounts(strong, -111, 1);
  EXPECT_EQ(strong.get(), nullptr);
}

TEST(ReferenceCounts, DestructionOfAnObjectNobodyTookLeavesTheEndMark) {
  auto* const item = new Item;
  const Weak weak(item);
  delete item;
  expectCounts(weak, -111, 1);
}

TEST(ReferenceCounts, StrongPointerToADeadObjectTakesAWeakHoldOnly) {
  Strong strong(new Item);
  const Weak weak(strong);
  strong = nullptr;
  const Strong late(weak);
  expectCounts(late, -111, 2);
  EXPECT_EQ(late.get(), nullptr);
}

TEST(ReferenceCounts, StrongPointerFromADyingObjectIsNullAndTakesAWeakHoldOnly) {
  auto* const item = new Item;
  Strong strong(item);
  bool isNull = false;
  item->atEnd = [&] {
    const int weakBefore = item->counts().weak();
    const Strong late(item);
    isNull = late.get() == nullptr && item->counts().strong() == -111;
    EXPECT_EQ(item->counts().weak(), weakBefore + 1);
  };
  strong = nullptr;
  EXPECT_TRUE(isNull);
}

TEST(ReferenceCounts, DeadPointerIsFalseAndEqualToNull) {
  Strong strong(new Item);
  const Weak weak(strong);
  EXPECT_TRUE(weak);
  strong = nullptr;
  EXPECT_FALSE(weak);
  EXPECT_TRUE(weak == nullptr);
}

TEST(ReferenceCounts, NullPointersHaveNoRecord) {
  EXPECT_EQ(Strong().counts(), nullptr);
  EXPECT_EQ(Strong(static_cast<Item*>(nullptr)).counts(), nullptr);
  EXPECT_EQ(Weak(static_cast<Item*>(nullptr)).counts(), nullptr);
  EXPECT_EQ(Weak(nullptr).get(), nullptr);
}

TEST(ReferenceCounts, EveryPointerMadeHasANumberOfItsOwn) {
  const Strong first(new Item);
  const Strong copy(first);
  const Weak weak(copy);
  EXPECT_EQ(copy.serialNumber(), first.serialNumber() + 1);
  EXPECT_EQ(weak.serialNumber(), copy.serialNumber() + 1);
}

TEST(ReferenceCounts, AssignmentGivesANewNumber) {
  Strong first(new Item);
  const Strong second(new Item);
  const std::uint64_t before = second.serialNumber();
  first = second;
  EXPECT_GT(first.serialNumber(), before);
  EXPECT_EQ(second.serialNumber(), before);
}

TEST(ReferenceCounts, AssignmentGivesAWeakPointerANewNumber) {
  const Strong strong(new Item);
  Weak first(strong);
  const Weak second(strong);
  first = second;
  EXPECT_GT(first.serialNumber(), second.serialNumber());
}

TEST(ReferenceCounts, ObjectsOfAFamilyAreNumberedInOrder) {
  const Item first;
  const SpecialItem second;
  EXPECT_EQ(second.serialNumber(), first.serialNumber() + 1);
}

TEST(ReferenceCounts, PointerToAnotherKindIsNullButHolds) {
  const Strong plain(new Item);
  const Torvel::StrongPtr<SpecialItem, Item> special(plain);
  EXPECT_EQ(special.get(), nullptr);
  expectCounts(plain, 2, 3);
}

TEST(ReferenceCounts, PointerToTheObjectsOwnKindIsCast) {
  const Strong plain(new SpecialItem);
  const Torvel::StrongPtr<SpecialItem, Item> special(plain);
  EXPECT_EQ(special.get(), plain.get());
}

using StrongSpecial = Torvel::StrongPtr<SpecialItem, Item>;
using WeakSpecial = Torvel::WeakPtr<SpecialItem, Item>;

TEST(ReferenceCounts, AssignmentFromAFailedCastCastsAnew) {
  const Strong plain(new Item);
  const StrongSpecial failed(plain);
  Strong strong(new Item);
  Weak weak(strong);
  strong = failed;
  weak = failed;
  EXPECT_EQ(strong.get(), plain.get());
  EXPECT_EQ(weak.get(), plain.get());
}

TEST(ReferenceCounts, ConstructionFromAFailedCastCastsAnew) {
  const Strong plain(new Item);
  const WeakSpecial failed(plain);
  EXPECT_EQ(Strong(failed).get(), plain.get());
  EXPECT_EQ(Weak(failed).get(), plain.get());
  EXPECT_EQ(StrongSpecial(Strong(failed)).get(), nullptr);
}

class Finished;

/// Refers to itself as the derived class, whose constructor has not run yet, so that the cast fails.
class Begun : public Item {
 public:
  Begun();
  Torvel::WeakPtr<Finished, Item> link;
};
class Finished : public Begun {};
Begun::Begun() : link(Weak(this)) {}

TEST(ReferenceCounts, CopyOfAPointerMadeDuringConstructionCastsAnew) {
  const Torvel::StrongPtr<Finished, Item> strong(new Finished);
  const Torvel::StrongPtr<Finished, Item> copy(strong->link);
  const Torvel::WeakPtr<Finished, Item> weakCopy(strong->link);
  EXPECT_EQ(strong->link.get(), nullptr);
  EXPECT_EQ(copy.get(), strong.get());
  EXPECT_EQ(weakCopy.get(), strong.get());
}

class Nothing : public Torvel::ReferenceBase<Nothing> {
 public:
  Nothing() : Torvel::ReferenceBase<Nothing>(nullptr) {}
};

TEST(ReferenceCounts, ObjectOnANullPointerIsRefused) {
  EXPECT_THROW(Nothing(), Torvel::MemoryException);
}

TEST(ReferenceCounts, RefusalIsAStandardException) {
  EXPECT_THROW(Nothing(), std::exception);
}

TEST(ReferenceCounts, StaticObjectHoldsItselfAndOutlivesEveryPointer) {
  int deaths = 0;
  {
    Torvel::Auto<Item> item(&deaths);
    EXPECT_EQ(item.counts().strong(), 1);
    { const Strong strong(&item); }
    EXPECT_EQ(deaths, 0);
  }
  EXPECT_EQ(deaths, 1);
}

TEST(ReferenceCounts, HookRunsWithTheLastStrongHoldStillStanding) {
  auto* const item = new Item;
  Strong strong(item);
  int strongInHook = -1;
  item->hook = [&] { strongInHook = item->counts().strong(); };
  { const Strong copy(strong); }
  EXPECT_EQ(strongInHook, -1);
  strong = nullptr;
  EXPECT_EQ(strongInHook, 1);
}

class Plain : public Torvel::ReferenceBase<Plain> {
 public:
  Plain() : Torvel::ReferenceBase<Plain>(this) {}
};

TEST(ReferenceCounts, EmptyHookIsRecognised) {
  EXPECT_FALSE(Plain().hasPreDestruction());
  EXPECT_TRUE(Item().hasPreDestruction());
}

} // namespace
