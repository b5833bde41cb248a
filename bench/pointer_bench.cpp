// SPDX-License-Identifier: BSD-3-Clause
// Copy and destruction of a strong pointer against std::shared_ptr, in a process with a second thread.
#include "model/torvel/references/pointer.h"

#include "bench/support/comparison.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace {

class Item : public Torvel::ReferenceBase<Item> {
 public:
  Item() : Torvel::ReferenceBase<Item>(this) {}
};

/// A second thread that only waits: in a process with one thread, shared pointers count without atomic operations.
class SecondThread {
 public:
  SecondThread() : waiting([this] { wait(); }) {}
  SecondThread(const SecondThread&) = delete;
  SecondThread& operator=(const SecondThread&) = delete;
  ~SecondThread() {
    {
      const std::lock_guard<std::mutex> lock(mutex);
      over = true;
    }
    changed.notify_one();
    waiting.join();
  }

 private:
  void wait() {
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [this] { return over; });
  }

  std::mutex mutex;
  std::condition_variable changed;
  bool over = false;
  std::thread waiting;
};

template <class Pointer>
__attribute__((noinline)) void copyAndEnd(const Pointer& pointer, unsigned int times) {
  for (unsigned int i = 0; i < times; ++i) {
    Pointer copy(pointer);
    benchmark::DoNotOptimize(copy);
  }
}

bench::Finding copies() {
  const SecondThread second;
  const unsigned int times = bench::records(10000000, 10000);
  const Torvel::StrongPtr<Item, Item> strong(new Item);
  const std::shared_ptr<int> shared = std::make_shared<int>(1);
  const auto copy = strong;
  const auto sharedCopy = shared;
  bench::require(copy.get() == strong.get() && strong->counts().strong() == sharedCopy.use_count(),
                 "two holds");
  copyAndEnd(strong, times);
  copyAndEnd(shared, times);
  bench::require(strong->counts().strong() == 2 && shared.use_count() == 2, "holds given back");
  return bench::compare({.run = [&] { copyAndEnd(strong, times); }},
                        {.run = [&] { copyAndEnd(shared, times); }});
}

} // namespace

int main(int argc, char** argv) {
  bench::addComparison("StrongPtr copy and end / std::shared_ptr", copies);
  return bench::runComparisons(argc, argv);
}
