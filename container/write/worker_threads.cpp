// SPDX-License-Identifier: BSD-3-Clause
// A few threads that run tasks in the order of their arrival.
#include "container/write/worker_threads.h"

#include "container/format/processors.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace container {
namespace {

constexpr unsigned int mostAtAll = 64;

} // namespace

WorkerThreads::WorkerThreads(unsigned int count) : mostThreads(count != 0 ? count : usableProcessors()) {
  mostThreads = std::min<std::size_t>(mostThreads, mostAtAll);
}

WorkerThreads::~WorkerThreads() {
  {
    const std::lock_guard<std::mutex> lock(mutex);
    isEnding = true;
    waiting.clear();
  }
  changed.notify_all();
  for (std::thread& thread : threads) {
    thread.join();
  }
}

void WorkerThreads::enqueue(std::function<void()> task) {
  if (threads.size() < mostThreads) {
    try {
      threads.reserve(mostThreads);
      threads.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
      mostThreads = std::max<std::size_t>(threads.size(), 1);
    }
  }
  if (threads.empty()) {
    task();
    return;
  }
  {
    const std::lock_guard<std::mutex> lock(mutex);
    waiting.push_back(std::move(task));
  }
  changed.notify_one();
}

void WorkerThreads::work() {
  std::unique_lock<std::mutex> lock(mutex);
  while (true) {
    changed.wait(lock, [this] { return isEnding || !waiting.empty(); });
    if (waiting.empty()) {
      return;
    }
    const std::function<void()> task = std::move(waiting.front());
    waiting.pop_front();
    lock.unlock();
    task();
    lock.lock();
  }
}

} // namespace container
