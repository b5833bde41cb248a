// SPDX-License-Identifier: BSD-3-Clause
// Counts under threads: many holds at once, and strong pointers made from weak ones during the last release.
#include "model/torvel/references/pointer.h"
#include "tests/support/console_lines.h"

#include <atomic>
#include <barrier>
#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

constexpr int threadCount = 4;

std::atomic<int> deaths{0};

class Shared : public Torvel::ReferenceBase<Shared> {
 public:
  Shared() : Torvel::ReferenceBase<Shared>(this) {}
  ~Shared() override {
    word = 0;
    ++deaths;
  }
  std::atomic<int> word{4711};
};

class Derived : public Shared {};

using Strong = Torvel::StrongPtr<Shared, Shared>;
using Weak = Torvel::WeakPtr<Shared, Shared>;

template <class Work>
void inThreads(Work work) {
  std::vector<std::thread> threads;
  for (int i = 0; i < threadCount; ++i) {
    threads.emplace_back(work, i);
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

TEST(CountStress, HoldsTakenInThreadsAreAllGivenBack) {
  const Strong root(new Shared);
  inThreads([&](int) {
    for (int i = 0; i < 20000; ++i) {
      const Strong copy(root);
      Weak weak(copy);
      Strong other;
      other = weak;
      weak = nullptr;
    }
  });
  EXPECT_EQ(root.counts()->strong(), 1);
  EXPECT_EQ(root.counts()->weak(), 2);
}

/// One object after the other: thread 0 releases the last strong hold while the others take one.
class LastReleaseRace {
 public:
  explicit LastReleaseRace(int roundCount) : rounds(roundCount), gate(threadCount, [this] { arrange(); }) {}

  void run() {
    inThreads([this](int thread) {
      for (int i = 0; i < rounds; ++i) {
        gate.arrive_and_wait();
        thread == 0 ? release() : takeUp(static_cast<std::size_t>(thread));
      }
      gate.arrive_and_wait();
      weaks[static_cast<std::size_t>(thread)] = nullptr;
    });
  }

  std::atomic<int> wrongWords{0};

 private:
  void arrange() noexcept {
    last = new Derived;
    for (Weak& weak : weaks) {
      weak = last;
    }
    if (++arranged > rounds) {
      last = nullptr;
    }
  }
  void release() { last = nullptr; }
  void takeUp(std::size_t thread) {
    const Torvel::StrongPtr<Derived, Shared> taken(weaks[thread]);
    if (const Derived* const object = taken.get(); object != nullptr && object->word != 4711) {
      ++wrongWords;
    }
  }

  const int rounds;
  int arranged = 0;
  Strong last;
  std::vector<Weak> weaks{threadCount};
  std::barrier<std::function<void()>> gate;
};

TEST(CountStress, TakingUpRacesWithTheLastRelease) {
  const support::ConsoleLines console; // catches the reports of cancelled destructions
  deaths = 0;
  constexpr int rounds = 5000;
  LastReleaseRace race(rounds);
  race.run();
  EXPECT_EQ(race.wrongWords, 0);
  EXPECT_EQ(deaths, rounds + 1); // every object was destroyed exactly once
}

TEST(CountStress, EndMarkIsNeverDisturbed) {
  Strong strong(new Shared);
  const Weak weak(strong);
  strong = nullptr;
  inThreads([&](int) {
    for (int i = 0; i < 20000; ++i) {
      const Strong late(weak);
    }
  });
  EXPECT_EQ(weak.counts()->strong(), -111);
  EXPECT_EQ(weak.counts()->weak(), 1);
}

TEST(CountStress, StrongCountMayRunUpToTheMark) {
  // The two counts share a word: a step below zero and back must not carry into the other one.
  Torvel::CountRecord<Shared> record(nullptr);
  record.exchangeStrong(-1);
  EXPECT_EQ(record.raiseBoth(), -1);
  record.raiseStrong();
  EXPECT_EQ(record.strong(), 0);
  EXPECT_EQ(record.weak(), 1);
  EXPECT_EQ(record.lowerStrong(), -1);
  EXPECT_EQ(record.weak(), 1);
}

} // namespace
