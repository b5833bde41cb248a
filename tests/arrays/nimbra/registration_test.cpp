// SPDX-License-Identifier: BSD-3-Clause
// Registration of the element types: what is registered, in which order, and only once.
#include "arrays/nimbra/registration.h"

#include "model/nimbra/fragment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using Nimbra::DynamicSize;
using Nimbra::getNimbraType;
using Nimbra::MemArray;
using Nimbra::MemBase;
using Nimbra::NimbraTypeBase;
using Quillon::ColourRGBA;
using Quillon::PhysicalSpace::point;
using Vector3 = Quillon::PhysicalSpace::vector;

namespace {

template <class... T>
std::vector<bool> flags(std::type_identity<std::tuple<T...>>) {
  std::vector<bool> all;
  (all.insert(all.end(), {MemArray<1, T>::registered, MemArray<2, T>::registered, MemArray<3, T>::registered,
                          MemArray<4, T>::registered}),
   ...);
  return all;
}

constexpr std::type_identity<Nimbra::ElementTypes> everyType;

/// The tables before the only registration of this process.
struct Tables {
  std::vector<bool> flagsBefore = flags(everyType);
  std::size_t creatorsBefore = MemBase::registeredCreators().size();
  std::size_t typesBefore = NimbraTypeBase::rememberedTypes().size();
};

const Tables& registeredOnce() {
  static const Tables tables = [] {
    const Tables before;
    Nimbra::registerElementTypes(everyType);
    return before;
  }();
  return tables;
}

class Registration : public testing::Test {
 protected:
  const Tables& tables = registeredOnce();
};

const std::vector<std::string> namesInOrder = {
    "Quillon::Coordinates<Quillon::Cartesian3D, double>::point",
    "double",
    "Quillon::Coordinates<Quillon::Cartesian3D, double>::vector",
    "float",
    "short",
    "unsigned char",
    "Quillon::DomainVector<Quillon::Vector<unsigned char, 4>, Quillon::RGBA, unsigned char>",
    "unsigned short",
    "unsigned long long",
    "int",
    "unsigned int"};

TEST_F(Registration, NothingIsEnteredBefore) {
  EXPECT_EQ(tables.creatorsBefore, 0U);
  EXPECT_EQ(tables.typesBefore, 0U);
  EXPECT_THAT(tables.flagsBefore, testing::Each(false));
}

TEST_F(Registration, AllocatorsStandInTheOrderOfTheTypes) {
  std::vector<std::string> names;
  for (const auto& entry : MemBase::registeredCreators()) {
    names.push_back(entry.type->typeName);
  }
  EXPECT_EQ(names, namesInOrder);
}

TEST_F(Registration, TypeObjectsStandInTheSameOrder) {
  std::vector<std::string> names;
  for (const auto& type : NimbraTypeBase::rememberedTypes()) {
    names.push_back(type->typeName);
  }
  EXPECT_EQ(names, namesInOrder);
}

TEST_F(Registration, SetsTheFlagsOfAll44Arrays) {
  EXPECT_EQ(flags(everyType).size(), 44U);
  EXPECT_THAT(flags(everyType), testing::Each(true));
}

TEST_F(Registration, SecondRunEntersNothing) {
  const auto before = MemBase::registeredCreators();
  Nimbra::registerElementTypes(everyType);
  Nimbra::registerElementTypes(std::type_identity<std::tuple<double, point>>());
  const auto after = MemBase::registeredCreators();
  ASSERT_EQ(after.size(), 11U);
  EXPECT_EQ(NimbraTypeBase::rememberedTypes().size(), 11U);
  for (std::size_t i = 0; i < after.size(); ++i) {
    EXPECT_EQ(after[i].allocator.get(), before[i].allocator.get());
  }
}

TEST_F(Registration, ArraysCountThemselvesFromThenOn) {
  const int before = MemBase::RegisteredTypes;
  const MemBase::Pointer first(new MemArray<1, point>(2, nullptr));
  const MemBase::Pointer second(new MemArray<4, unsigned int>({1, 1, 1, 1}, nullptr));
  EXPECT_EQ(MemBase::RegisteredTypes, before + 2);
}

TEST_F(Registration, ArraysAreMadeByType) {
  for (int rank = 1; rank <= 4; ++rank) {
    const std::vector<std::uint64_t> extents{2, 3, 1, 2};
    const MemBase::Pointer array = MemBase::createArray(typeid(Vector3), DynamicSize(rank, extents.data()));
    ASSERT_TRUE(array);
    EXPECT_EQ(array->rank(), rank);
    EXPECT_EQ(array->elementType(), typeid(Vector3));
    EXPECT_EQ(array->createdBy().get(), nullptr);
  }
}

TEST_F(Registration, ArrayOfAnUnknownTypeIsNull) {
  EXPECT_EQ(MemBase::createArray(typeid(std::string), DynamicSize{1}).get(), nullptr);
}

TEST_F(Registration, KnownTypeKeepsItsAllocator) {
  EXPECT_FALSE(MemBase::registerCreator(new Nimbra::MemArrayAllocator<double>, getNimbraType<double>()));
  EXPECT_EQ(MemBase::registeredCreators().size(), 11U);
}

TEST_F(Registration, NothingIsRefused) {
  EXPECT_FALSE(MemBase::registerCreator(nullptr, getNimbraType<double>()));
  EXPECT_FALSE(MemBase::registerCreator(new Nimbra::MemArrayAllocator<double>, nullptr));
}

template <class T>
class EveryType : public testing::Test {
 protected:
  const Torvel::StrongPtr<NimbraTypeBase, NimbraTypeBase> type = getNimbraType<T>();
  const Torvel::StrongPtr<MemBase::Allocator, Torvel::InterfaceBase> allocator{
      new Nimbra::MemArrayAllocator<T>};
};
using Types = testing::Types<point, double, Vector3, float, short, unsigned char, ColourRGBA, unsigned short,
                             unsigned long long, int, unsigned int>;
TYPED_TEST_SUITE(EveryType, Types);

TYPED_TEST(EveryType, HasOneTypeObject) {
  const auto again = getNimbraType<TypeParam>();
  EXPECT_EQ(again.get(), this->type.get());
  EXPECT_NE(again.serialNumber(), this->type.serialNumber());
  EXPECT_EQ(this->type->self().get(), this->type.get());
}

TYPED_TEST(EveryType, TypeObjectHoldsItself) {
  EXPECT_GE(this->type.counts()->strong(), 2); // its own hold and that of the test
  EXPECT_NE((dynamic_cast<Torvel::Auto<Nimbra::NimbraType<TypeParam>>*>(this->type.get())), nullptr);
}

TYPED_TEST(EveryType, TypeObjectKnowsItsType) {
  EXPECT_EQ(this->type->elementType(), typeid(TypeParam));
  EXPECT_TRUE(this->type->isElementType(typeid(TypeParam)));
  EXPECT_FALSE(this->type->isElementType(typeid(std::string)));
  EXPECT_EQ(this->type->domainType(), typeid(typename Nimbra::ElementTraits<TypeParam>::Domain));
  EXPECT_EQ(this->type->typeName, Torvel::Typename(typeid(TypeParam)));
}

/// Type information as a module that shares no symbols with this one has it.
class OtherIdentity : public std::type_info {
 public:
  explicit OtherIdentity(const char* name) : std::type_info(name) {}
};

TYPED_TEST(EveryType, TypeObjectKnowsItsTypeByAnotherCopyOfTheName) {
  const std::string name = typeid(TypeParam).name();
  EXPECT_TRUE(this->type->isElementType(OtherIdentity(name.c_str())));
  EXPECT_FALSE(this->type->isElementType(OtherIdentity((name + "x").c_str())));
}

TYPED_TEST(EveryType, TypeObjectMakesChunks) {
  const auto chunk = this->type->create(3);
  EXPECT_EQ(chunk->elementCount(), 3U);
  EXPECT_EQ(chunk->elementType(), typeid(TypeParam));
}

TYPED_TEST(EveryType, ReservedAnswersOfTheTypeObjectAreNothing) {
  EXPECT_EQ(this->type->suffix(), "");
  EXPECT_EQ(this->type->reservedA(), 0);
  EXPECT_EQ(this->type->reservedB(), 0);
}

TYPED_TEST(EveryType, AllocatorServesRanksOneToFour) {
  const std::vector<std::uint64_t> extents{2, 3, 1, 2};
  const std::vector<std::uint64_t> totals{2, 6, 6, 12};
  for (int rank = 1; rank <= 4; ++rank) {
    const MemBase::Pointer array = this->allocator->create(DynamicSize(rank, extents.data()));
    ASSERT_TRUE(array);
    EXPECT_EQ(array->rank(), rank);
    EXPECT_EQ(array->elementCount(), totals[static_cast<std::size_t>(rank - 1)]);
    EXPECT_EQ(array->elementType(), typeid(TypeParam));
  }
}

TYPED_TEST(EveryType, AllocatorRefusesOtherRanks) {
  EXPECT_EQ(this->allocator->create(DynamicSize()).get(), nullptr);
  EXPECT_EQ(this->allocator->create(DynamicSize{1, 1, 1, 1, 1}).get(), nullptr);
}

TYPED_TEST(EveryType, AllocatorIsAnInterfaceThatAppliesNothing) {
  EXPECT_EQ(this->allocator->interfaceType(), typeid(MemBase::Allocator));
  const Nimbra::FragmentID object("object");
  EXPECT_FALSE(this->allocator->apply_const(object, nullptr));
}

TEST(FirstWord, IsTheFirst32BitsOfAValue) {
  const double number = 1.0; // 0x3ff0000000000000
  const int whole = -2;
  const unsigned char small = 7;
  EXPECT_EQ(getNimbraType<double>()->firstWord(&number), 0U);
  EXPECT_EQ(getNimbraType<int>()->firstWord(&whole), 0xfffffffeU);
  EXPECT_EQ(getNimbraType<unsigned char>()->firstWord(&small), 7U); // no byte beyond the value is read
}

} // namespace
