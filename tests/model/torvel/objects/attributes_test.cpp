// SPDX-License-Identifier: BSD-3-Clause
// Attributes of an object, and names of types.
#include "model/torvel/objects/attributes.h"

#include "model/torvel/core/typename.h"
#include "model/torvel/objects/cache.h"
#include "model/torvel/references/chunk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>

using Torvel::Attributes;
using Torvel::ChunkBase;
using Pointer = Torvel::StrongPtr<ChunkBase, ChunkBase>;

namespace {

Pointer bytes(unsigned char value) {
  const Torvel::StrongPtr<Torvel::Chunk<unsigned char>, ChunkBase> chunk(new Torvel::Chunk<unsigned char>(1));
  chunk->values()[0] = value;
  return chunk;
}

std::vector<std::string> names(const Attributes& attributes) {
  std::vector<std::string> all;
  for (const auto& attribute : attributes) {
    all.push_back(attribute.name);
  }
  return all;
}

TEST(AttributesOfAnObject, AreHeldStrongly) {
  Attributes attributes;
  Pointer chunk = bytes(7);
  const Torvel::WeakPtr<ChunkBase, ChunkBase> seen(chunk);
  attributes.setAttribute("LeapSecondsAdded?", chunk);
  chunk = nullptr;
  EXPECT_TRUE(seen);
  EXPECT_EQ(attributes.getAttribute("LeapSecondsAdded?").get(), seen.get());
}

TEST(AttributesOfAnObject, KeepTheOrderOfCreation) {
  Attributes attributes;
  for (const char* name : {"b", "a", "c"}) {
    attributes.setAttribute(name, bytes(1));
  }
  EXPECT_THAT(names(attributes), testing::ElementsAre("b", "a", "c"));
  EXPECT_EQ(attributes.size(), 3U);
}

TEST(AttributesOfAnObject, AreReplacedInTheirPlace) {
  Attributes attributes;
  attributes.setAttribute("first", bytes(1));
  attributes.setAttribute("second", bytes(2));
  const Pointer newer = bytes(3);
  attributes.setAttribute("first", newer);
  EXPECT_THAT(names(attributes), testing::ElementsAre("first", "second"));
  EXPECT_EQ(attributes.getAttribute("first").get(), newer.get());
}

TEST(AttributesOfAnObject, ReplacedChunkIsReleased) {
  Attributes attributes;
  attributes.setAttribute("name", bytes(1));
  const Torvel::WeakPtr<ChunkBase, ChunkBase> old(attributes.getAttribute("name"));
  attributes.setAttribute("name", bytes(2));
  EXPECT_FALSE(old);
}

TEST(AttributesOfAnObject, AbsentOneIsNull) {
  const Attributes attributes;
  EXPECT_TRUE(attributes.empty());
  EXPECT_EQ(attributes.getAttribute("nowhere").get(), nullptr);
}

TEST(MemoryCache, IsOneForTheProcess) {
  EXPECT_EQ(&Torvel::Cache::MemCache(), &Torvel::Cache::MemCache());
  EXPECT_TRUE(Torvel::Cache::MemCache());
}

namespace named {
struct Thing {};
} // namespace named

TEST(Names, OfTypesAreReadable) {
  EXPECT_EQ(Torvel::Typename(typeid(void)), "void");
  EXPECT_EQ(Torvel::Typename(typeid(unsigned long long)), "unsigned long long");
  EXPECT_EQ(Torvel::Typename(typeid(Torvel::ChunkBase)), "Torvel::ChunkBase");
  EXPECT_EQ(Torvel::Typename(typeid(std::map<int, named::Thing>*)).find("std::map<int, "), 0U);
}

} // namespace
