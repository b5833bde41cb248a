// SPDX-License-Identifier: BSD-3-Clause
// The entries of the framework's tables after the library was loaded.
#include <rdb2nimbra/rdb2nimbra.h>

#include "model/nimbra/mem_base.h"
#include "model/torvel/core/typename.h"

#include <gtest/gtest.h>

namespace {

const std::vector<std::string> typesInOrder{
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

TEST(LoadingTheLibrary, EntersElevenAllocatorsInOrder) {
  std::vector<std::string> names;
  for (const auto& entry : Nimbra::MemBase::registeredCreators()) {
    names.push_back(Torvel::Typename(entry.type->elementType()));
  }
  EXPECT_EQ(names, typesInOrder);
}

TEST(LoadingTheLibrary, PublishesElevenTypeObjectsInOrder) {
  std::vector<std::string> names;
  for (const auto& type : Nimbra::NimbraTypeBase::rememberedTypes()) {
    names.push_back(type->typeName);
  }
  EXPECT_EQ(names, typesInOrder);
}

TEST(LoadingTheLibrary, LetsArraysOfEveryTypeAndRankBeCounted) {
  const std::vector<std::uint64_t> extents{1, 1, 1, 1};
  for (const auto& entry : Nimbra::MemBase::registeredCreators()) {
    for (int rank = 1; rank <= 4; ++rank) {
      const int before = Nimbra::MemBase::RegisteredTypes;
      entry.allocator->create(Nimbra::DynamicSize(rank, extents.data()));
      EXPECT_EQ(Nimbra::MemBase::RegisteredTypes, before + 1) << entry.type->typeName << ", rank " << rank;
    }
  }
}

TEST(LoadingTheLibrary, LetsAnyModuleMakeArraysByType) {
  const auto array = Nimbra::MemBase::createArray(typeid(float), Nimbra::DynamicSize{3, 2});
  ASSERT_TRUE(array);
  EXPECT_EQ(array->rank(), 2);
  EXPECT_EQ(array->elementCount(), 6U);
}

} // namespace
