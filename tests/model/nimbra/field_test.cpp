// SPDX-License-Identifier: BSD-3-Clause
// Fields: one array per fragment, held by the field, over a collection of identities that fields share.
#include "arrays/nimbra/mem_array.h"
#include "tests/support/grid.h"

#include <algorithm>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

using Nimbra::Field;
using Nimbra::MemArray;
using Nimbra::MemBase;
using support::fragmentNames;
using testing::ElementsAre;

namespace {

MemBase::Pointer oneDouble() {
  return new MemArray<1, double>(1, nullptr);
}

class Fields : public testing::Test {
 protected:
  void put(const std::string& fragment, const MemBase::Pointer& array) {
    field->setPersistentData(array, field->makeFragmentID(fragment), Torvel::Cache::MemCache(), "");
  }
  const Field::Pointer field{new Field(nullptr)};
};

TEST_F(Fields, FragmentOfANameIsMadeOnce) {
  const auto first = field->makeFragmentID("Fragment_0");
  EXPECT_EQ(field->makeFragmentID("Fragment_0").get(), first.get());
  EXPECT_NE(field->makeFragmentID("Fragment_1").get(), first.get());
  EXPECT_EQ(first->name(), "Fragment_0");
}

TEST_F(Fields, ReferenceToAFragmentOutlastsFurtherFragments) {
  const auto& first = field->makeFragmentID("Fragment_0");
  for (int i = 1; i < 1000; ++i) {
    field->makeFragmentID("Fragment_" + std::to_string(i));
  }
  EXPECT_EQ(first->name(), "Fragment_0");
}

TEST_F(Fields, FragmentsAreKeptByTheCollection) {
  field->makeFragmentID("Fragment_0");
  EXPECT_EQ(field->fragmentIDCollection()->fragments().size(), 1U);
  EXPECT_TRUE(field->fragments().empty()); // an identity alone is no data
}

TEST_F(Fields, HoldTheirArraysStrongly) {
  MemBase::Pointer array = oneDouble();
  const Torvel::WeakPtr<MemBase, Torvel::Cacheable> seen(array);
  put("Fragment_0", array);
  array = nullptr;
  ASSERT_TRUE(seen);
  EXPECT_EQ(seen.counts()->strong(), 1); // only the field holds it, the cache does not
  EXPECT_EQ(field->array("Fragment_0").get(), seen.get());
}

TEST_F(Fields, ArraysStandInOrderOfTheFirstData) {
  for (const char* name : {"Fragment_2", "Fragment_0", "Fragment_1"}) {
    put(name, oneDouble());
  }
  EXPECT_THAT(fragmentNames(field), ElementsAre("Fragment_2", "Fragment_0", "Fragment_1"));
}

TEST_F(Fields, SecondArrayOfAFragmentTakesThePlaceOfTheFirst) {
  put("Fragment_0", oneDouble());
  put("Fragment_1", oneDouble());
  const Torvel::WeakPtr<MemBase, Torvel::Cacheable> old(field->array("Fragment_0"));
  const MemBase::Pointer newer = oneDouble();
  put("Fragment_0", newer);
  EXPECT_FALSE(old);
  EXPECT_EQ(field->array("Fragment_0").get(), newer.get());
  EXPECT_THAT(fragmentNames(field), ElementsAre("Fragment_0", "Fragment_1"));
}

TEST_F(Fields, ArrayOfAnUnknownFragmentIsNull) {
  EXPECT_EQ(field->array("Fragment_0").get(), nullptr);
}

TEST_F(Fields, DataWithoutAFragmentIsNoFragmentByName) {
  field->setPersistentData(oneDouble(), nullptr, Torvel::Cache::MemCache(), "");
  EXPECT_EQ(field->array("Fragment_0").get(), nullptr);
  EXPECT_EQ(field->fragments().size(), 1U);
}

TEST_F(Fields, WithoutACacheTheFieldHoldsTheArrayItself) {
  field->setPersistentData(oneDouble(), field->makeFragmentID("Fragment_0"), nullptr, "");
  EXPECT_TRUE(field->array("Fragment_0"));
}

/// A cache that keeps a copy instead of the object.
class CopyingCache final : public Torvel::Cache {
  using Object = Torvel::StrongPtr<Torvel::Cacheable, Torvel::Cacheable>;

 public:
  Object keep(const Object& object) override {
    return Torvel::StrongPtr<MemBase, Torvel::Cacheable>(object)->deepCopy();
  }
};

TEST_F(Fields, HoldWhatTheCacheKeepsForThem) {
  const MemBase::Pointer array = oneDouble();
  const Torvel::StrongPtr<Torvel::Cache, Torvel::CacheBase> cache(new CopyingCache);
  field->setPersistentData(array, field->makeFragmentID("Fragment_0"), cache, "");
  EXPECT_TRUE(field->array("Fragment_0"));
  EXPECT_NE(field->array("Fragment_0").get(), array.get());
}

TEST_F(Fields, ReleaseTheirMemoryWhenTheyAreDestroyed) {
  const std::int64_t before = Torvel::ChunkBase::TotalMemsize;
  Field::Pointer other(new Field(nullptr));
  other->setPersistentData(new MemArray<1, double>(1000, nullptr), other->makeFragmentID("a"),
                           Torvel::Cache::MemCache(), "");
  EXPECT_EQ(Torvel::ChunkBase::TotalMemsize, before + 8000);
  other = nullptr;
  EXPECT_EQ(Torvel::ChunkBase::TotalMemsize, before);
}

TEST_F(Fields, BlockIsPublishedWithoutACopy) {
  const Torvel::StrongPtr<Torvel::TypedChunk<double>, Torvel::ChunkBase> chunk(new Torvel::Chunk<double>(10));
  put("Fragment_0", new MemArray<1, double>(chunk, 10, nullptr));
  EXPECT_EQ(field->array("Fragment_0")->rawData(), chunk->data());
  EXPECT_EQ(chunk.counts()->strong(), 2);
}

TEST_F(Fields, OverOneCollectionShareTheirFragments) {
  const Field::Pointer other(new Field(field->fragmentIDCollection()));
  EXPECT_EQ(other->fragmentIDCollection().get(), field->fragmentIDCollection().get());
  EXPECT_EQ(other->makeFragmentID("Fragment_0").get(), field->makeFragmentID("Fragment_0").get());
  put("Fragment_0", oneDouble());
  EXPECT_TRUE(other->fragments().empty());
}

TEST_F(Fields, HaveAttributesAndAnAge) {
  field->attributes().setAttribute("unit", new Torvel::Chunk<unsigned char>(1));
  field->touch();
  EXPECT_EQ(field->attributes().size(), 1U);
  EXPECT_EQ(field->lastChange(), Torvel::Ageable::GlobalTime);
}

TEST(FieldClasses, HaveTheFixedBases) {
  using Family =
      Nimbra::Ownable<Nimbra::CreativeArrayBase, Nimbra::CreativeArrayBaseContainerBase>::Container;
  static_assert(std::is_base_of_v<Family, Field>);
  static_assert(std::is_base_of_v<Nimbra::Ownable<Field, Nimbra::ChildrenProperties>, Field>);
  static_assert(std::is_base_of_v<Torvel::Intercube, Field>);
  static_assert(std::is_base_of_v<Nimbra::FragmentIDCollectionProvider, Field>);
  static_assert(std::is_base_of_v<Torvel::Intercube, Nimbra::FragmentID>);
  static_assert(std::is_base_of_v<Torvel::Cacheable, MemBase>);
  static_assert(std::is_base_of_v<Torvel::Ageable, Torvel::Creature>);
  Field field(nullptr);
  EXPECT_EQ(static_cast<void*>(&field), static_cast<void*>(static_cast<Family*>(&field)));
}

TEST(FieldClasses, BasesOfAFieldKeepTheFixedOrder) {
  Field field(nullptr);
  const std::vector<const void*> places{
      static_cast<Field::Family*>(&field),
      static_cast<Nimbra::Ownable<Field, Nimbra::ChildrenProperties>*>(&field),
      static_cast<Torvel::Intercube*>(&field), static_cast<Nimbra::FragmentIDCollectionProvider*>(&field),
      &field.attributes()};
  EXPECT_TRUE(std::is_sorted(places.begin(), places.end(), std::less<>()));
}

} // namespace
