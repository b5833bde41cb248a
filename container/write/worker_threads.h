// SPDX-License-Identifier: BSD-3-Clause
// A few threads that run tasks in the order of their arrival. Internal to the container.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace container {

/// Threads that start with the first task. Destruction waits for the tasks that run and drops the others.
class WorkerThreads {
 public:
  /// \param count  threads at most, and never more than 64; 0 takes one per processor that this thread may run on
  explicit WorkerThreads(unsigned int count);
  WorkerThreads(const WorkerThreads&) = delete;
  WorkerThreads& operator=(const WorkerThreads&) = delete;
  ~WorkerThreads();

  /// How many tasks run at a time, at least 1.
  std::size_t count() const { return mostThreads; }
  /// Runs a task as soon as a thread is free; on this thread where the system has none to give.
  template <class Result>
  std::future<Result> run(std::function<Result()> task) {
    auto packed = std::make_shared<std::packaged_task<Result()>>(std::move(task));
    std::future<Result> result = packed->get_future();
    enqueue([packed] { (*packed)(); });
    return result;
  }

 private:
  void enqueue(std::function<void()> task);
  void work();

  std::size_t mostThreads;
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<std::function<void()>> waiting;
  bool isEnding = false;
  std::vector<std::thread> threads;
};

} // namespace container
