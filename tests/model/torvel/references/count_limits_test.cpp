// SPDX-License-Identifier: BSD-3-Clause
// Counts at the ends of their range: they stay there, and no step carries into the other count.
#include "tests/model/torvel/references/counted_item.h"
#include "tests/support/console_lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <new>
#include <ostream>

using counted::Item;
using counted::Record;
using counted::Strong;
using counted::Weak;

namespace {

constexpr int maximum = std::numeric_limits<std::int32_t>::max();
constexpr int minimum = std::numeric_limits<std::int32_t>::min();

struct Counts {
  int strong;
  int weak;

  bool operator==(const Counts&) const = default;
  friend void PrintTo(const Counts& counts, std::ostream* stream) {
    *stream << "strong " << counts.strong << ", weak " << counts.weak;
  }
};

Counts countsOf(const Record& record) {
  return {record.strong(), record.weak()};
}

struct Step {
  const char* name;
  int (*run)(Record&); ///< returns what the step returns, 0 where it returns nothing
  Counts before;
  Counts after;
  int returned;

  friend void PrintTo(const Step& step, std::ostream* stream) { *stream << step.name; }
};

int raiseWeak(Record& record) {
  record.raiseWeak();
  return 0;
}
int raiseStrong(Record& record) {
  record.raiseStrong();
  return 0;
}
int raiseBoth(Record& record) {
  return record.raiseBoth();
}
int lowerBoth(Record& record) {
  return record.lowerBothUnlessLast() ? 1 : 0;
}
int lowerStrong(Record& record) {
  return record.lowerStrong();
}
int lowerWeak(Record& record) {
  return record.lowerWeak();
}

class CountLimit : public testing::TestWithParam<Step> {};

TEST_P(CountLimit, StepLeavesBothCountsInRange) {
  const Step& step = GetParam();
  Record record(nullptr, step.before.strong, step.before.weak);
  EXPECT_EQ(step.run(record), step.returned);
  EXPECT_EQ(countsOf(record), step.after);
}

INSTANTIATE_TEST_SUITE_P(
    CountRecord, CountLimit,
    testing::Values(
        Step{"RaiseWeakUpToTheMaximum", raiseWeak, {1, maximum - 1}, {1, maximum}, 0},
        Step{"RaiseWeakAtTheMaximum", raiseWeak, {1, maximum}, {1, maximum}, 0},
        Step{"RaiseWeakOfTheDestroyed", raiseWeak, {-111, maximum}, {-111, maximum}, 0},
        Step{"RaiseWeakBelowZero", raiseWeak, {-1, -1}, {-1, 0}, 0},
        Step{"RaiseBothAtTheWeakMaximum", raiseBoth, {1, maximum}, {2, maximum}, 1},
        Step{"RaiseBothAtTheStrongMaximum", raiseBoth, {maximum, 5}, {maximum, 6}, maximum},
        Step{"RaiseBothAtBothMaxima", raiseBoth, {maximum, maximum}, {maximum, maximum}, maximum},
        Step{"RaiseBothOfTheDestroyed", raiseBoth, {-111, maximum}, {-111, maximum}, -111},
        Step{"RaiseStrongAtTheMaximum", raiseStrong, {maximum, 5}, {maximum, 5}, 0},
        Step{"LowerWeakAtTheMaximum", lowerWeak, {1, maximum}, {1, maximum}, maximum},
        Step{"LowerWeakBelowTheMaximum", lowerWeak, {1, maximum - 1}, {1, maximum - 2}, maximum - 2},
        Step{"LowerWeakAtZero", lowerWeak, {0, 0}, {0, -1}, -1},
        Step{"LowerWeakAtTheMinimum", lowerWeak, {0, minimum}, {0, minimum}, minimum},
        Step{"LowerStrongAtTheMaximum", lowerStrong, {maximum, 5}, {maximum, 5}, maximum},
        Step{"LowerStrongAtTheMinimum", lowerStrong, {minimum, 5}, {minimum, 5}, minimum},
        Step{"LowerBothAtTheWeakMaximum", lowerBoth, {2, maximum}, {1, maximum}, 1},
        Step{"LowerBothAtTheStrongMaximum", lowerBoth, {maximum, 5}, {maximum, 4}, 1},
        Step{"LowerBothAtBothMaxima", lowerBoth, {maximum, maximum}, {maximum, maximum}, 1},
        Step{"LowerBothAtTheLast", lowerBoth, {1, maximum}, {1, maximum}, 0}),
    [](const auto& step) { return std::string(step.param.name); });

/// Sets the counts of a record to their limit, and restores the true ones at the end.
class CountsAtTheLimit {
 public:
  CountsAtTheLimit(Record& counts, Counts limit, Counts atEnd) : record(counts), last(atEnd) { set(limit); }
  CountsAtTheLimit(const CountsAtTheLimit&) = delete;
  CountsAtTheLimit& operator=(const CountsAtTheLimit&) = delete;
  ~CountsAtTheLimit() { set(last); }

 private:
  void set(Counts counts) { new (&record) Record(record.object(), counts.strong, counts.weak); }

  Record& record;
  const Counts last;
};

TEST(CountLimits, ObjectHeldTooOftenToCountOutlivesEveryPointer) {
  const support::ConsoleLines console;
  int deaths = 0;
  const Strong last(new Item(&deaths));
  const CountsAtTheLimit limit(counted::record(last), {maximum, maximum}, {1, 2});
  { const Strong copy(last); }
  { const Weak weak(last); }
  EXPECT_EQ(countsOf(*last.counts()), (Counts{maximum, maximum}));
  EXPECT_EQ(deaths, 0);
  EXPECT_THAT(console.lines(), testing::IsEmpty());
}

TEST(CountLimits, RecordHeldTooOftenToCountOutlivesItsObject) {
  const support::ConsoleLines console;
  int deaths = 0;
  Strong strong(new Item(&deaths));
  const Weak last(strong);
  const CountsAtTheLimit limit(counted::record(last), {1, maximum}, {-111, 1});
  strong = nullptr;
  EXPECT_EQ(deaths, 1);
  EXPECT_EQ(countsOf(*last.counts()), (Counts{-111, maximum}));
  EXPECT_THAT(console.lines(), testing::IsEmpty());
}

} // namespace
