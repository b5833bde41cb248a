// SPDX-License-Identifier: BSD-3-Clause
// The order of the steps of a release, recorded by a count record that replaces the real one.
#include "model/torvel/references/count_record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace {

class Watched;
std::vector<std::string> steps;

void step(const std::string& name) {
  steps.push_back(name);
}

} // namespace

namespace Torvel {

/// Replaces the real record: the same steps, single-threaded, with a log.
template <>
class CountRecord<Watched> {
 public:
  explicit CountRecord(Watched* object) : live(object) {}
  ~CountRecord() { step("record freed"); }
  std::int32_t strong() const { return strongCount; }
  std::int32_t weak() const { return weakCount; }
  Watched* object() const { return live; }
  bool alive() const { return live != nullptr && strongCount >= 0; }
  void raiseWeak() { ++weakCount; }
  void raiseStrong() { ++strongCount; }
  std::int32_t raiseBoth() {
    ++weakCount;
    return strongCount < 0 ? strongCount : strongCount++;
  }
  bool lowerBothUnlessLast() { return strongCount > 1 && (--strongCount, --weakCount, true); }
  std::int32_t lowerStrong() {
    step("strong lowered");
    return --strongCount;
  }
  std::int32_t lowerWeak() {
    step("weak lowered");
    return --weakCount;
  }
  std::int32_t exchangeStrong(std::int32_t value) {
    step("strong = " + std::to_string(value));
    return std::exchange(strongCount, value);
  }
  std::int32_t markDestroyedUnlessHeld() {
    step("end marked");
    return std::exchange(strongCount, strongDestroyed);
  }
  Watched* takeObject() {
    if (live != nullptr) {
      step("object = null");
    }
    return std::exchange(live, nullptr);
  }

 private:
  std::int32_t strongCount = 0;
  std::int32_t weakCount = 0;
  Watched* live;
};

} // namespace Torvel

#include "model/torvel/references/pointer.h"

namespace {

class Watched : public Torvel::ReferenceBase<Watched> {
 public:
  Watched() : Torvel::ReferenceBase<Watched>(this) {}
  ~Watched() override { step("destroyed"); }
  void preDestruction() override { step("hook"); }
  void CacheableDeferredConstructor() { step("deferred construction"); }
  void PreDestructor() { step("before destruction"); }
};

using Strong = Torvel::StrongPtr<Watched, Watched>;

TEST(ReleaseOrder, LastStrongReleaseGoesStepByStep) {
  Strong strong(new Watched);
  steps.clear();
  strong = nullptr;
  EXPECT_THAT(steps, testing::ElementsAre("hook", "strong lowered", "end marked", "object = null",
                                          "before destruction", "destroyed", "weak lowered", "weak lowered",
                                          "record freed"));
}

TEST(ReleaseOrder, RecordIsFreedByTheLastWeakHolder) {
  Strong strong(new Watched);
  Torvel::WeakPtr<Watched, Watched> weak(strong);
  strong = nullptr;
  steps.clear();
  weak = nullptr;
  EXPECT_THAT(steps, testing::ElementsAre("weak lowered", "record freed"));
}

TEST(ReleaseOrder, DestructionWhileTheCountStandsIsMarkedTwice) {
  auto* const watched = new Watched;
  const Strong strong(watched);
  steps.clear();
  delete watched;
  EXPECT_THAT(steps, testing::ElementsAre("destroyed", "strong = -333", "strong = -111", "object = null",
                                          "weak lowered"));
}

TEST(ReleaseOrder, ConstructionIsFinishedByTheFirstStrongHoldOnly) {
  auto* const watched = new Watched;
  steps.clear();
  const Torvel::WeakPtr<Watched, Watched> weak(watched);
  EXPECT_THAT(steps, testing::IsEmpty());
  const Strong first(watched);
  const Strong second(watched);
  EXPECT_THAT(steps, testing::ElementsAre("deferred construction"));
}

} // namespace
