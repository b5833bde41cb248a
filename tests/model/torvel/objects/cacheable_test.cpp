// SPDX-License-Identifier: BSD-3-Clause
// Cacheable objects: construction finished by the first strong hold, and the step before the destruction.
#include "model/torvel/objects/cacheable.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace {

struct Trace {
  int saved = 0;
  bool completeInDestructor = true;
  bool linkedInDestructor = true;
  bool destroyed = false;
  bool refuse = false;
};

class Document : public Torvel::Cacheable {
 public:
  explicit Document(Trace& seen) : trace(seen) {}
  ~Document() override {
    trace.completeInDestructor = isComplete();
    trace.linkedInDestructor = counts().object() != nullptr;
    trace.destroyed = true;
  }
  std::uint64_t memorySize() const override { return 0; }
  void saveInterfaces() override {
    ++trace.saved;
    if (trace.refuse) {
      throw std::runtime_error("no memory for a save interface");
    }
  }

 private:
  Trace& trace;
};

using Strong = Torvel::StrongPtr<Document, Torvel::Cacheable>;
using Weak = Torvel::WeakPtr<Document, Torvel::Cacheable>;

TEST(Cacheables, ConstructorLeavesTheConstructionOpen) {
  Trace trace;
  const Document document(trace);
  EXPECT_FALSE(document.isComplete());
  EXPECT_EQ(trace.saved, 0);
}

TEST(Cacheables, WeakHoldLeavesTheConstructionOpen) {
  Trace trace;
  Document document(trace);
  const Weak weak(&document);
  EXPECT_FALSE(document.isComplete());
}

TEST(Cacheables, FirstStrongHoldFinishesTheConstruction) {
  Trace trace;
  const Strong strong(new Document(trace));
  EXPECT_TRUE(strong->isComplete());
  EXPECT_EQ(trace.saved, 1);
}

TEST(Cacheables, FurtherStrongHoldsFinishNothing) {
  Trace trace;
  const Strong strong(new Document(trace));
  const Strong copy(strong);
  const Torvel::StrongPtr<Torvel::Cacheable, Torvel::Cacheable> plain(copy);
  EXPECT_EQ(trace.saved, 1);
}

TEST(Cacheables, PreDestructorRunsOnTheObjectThatIsCutOffItsRecord) {
  Trace trace;
  { const Strong strong(new Document(trace)); }
  EXPECT_TRUE(trace.destroyed);
  EXPECT_FALSE(trace.completeInDestructor);
  EXPECT_FALSE(trace.linkedInDestructor);
}

TEST(Cacheables, FailureOfTheDeferredConstructionReleasesTheObject) {
  Trace trace;
  trace.refuse = true;
  EXPECT_THROW(Strong(new Document(trace)), std::runtime_error);
  EXPECT_TRUE(trace.destroyed);
}

TEST(Cacheables, DomainAndCreatorAreVoid) {
  Trace trace;
  const Document document(trace);
  EXPECT_EQ(document.DomainType(), typeid(void));
  EXPECT_EQ(document.CreatorType(), typeid(void));
}

class Clockwork : public Torvel::Ageable {};

TEST(Clock, ChangeMovesTheClockOnAndBecomesTheAge) {
  Clockwork first;
  Clockwork second;
  EXPECT_EQ(first.lastChange(), 0U);
  const std::uint64_t before = Torvel::Ageable::GlobalTime;
  first.touch();
  second.touch();
  EXPECT_EQ(first.lastChange(), before + 1);
  EXPECT_EQ(second.lastChange(), before + 2);
  EXPECT_EQ(Torvel::Ageable::GlobalTime, before + 2);
}

} // namespace
