// SPDX-License-Identifier: BSD-3-Clause
// Transforms a batch of points, on two threads if it is large.
#include "platform/transformation/transform.h"

#include "model/torvel/objects/environment.h"
#include "platform/transformation/operation.h"
#include "platform/transformation/repeated_points.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <exception>
#include <memory>
#include <sys/mman.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace Proj {

namespace {

using Quillon::PhysicalSpace::point;

// A piece's points stay in a core's own cache between the search for runs and their transformation.
constexpr std::size_t pieceSize = 16384;
// Below this a second thread costs more than it saves.
constexpr std::size_t sharedBatchSize = 4 * pieceSize;

// Found once and kept: looking an operation up in proj.db takes as long as 100,000 points.
struct Kept {
  std::unique_ptr<Operation> own, helper;
};

Kept& keptByThread() {
  thread_local Kept kept;
  return kept;
}

// Two threads draw pieces from one counter, so that neither waits for the other for long.
class Batch {
 public:
  explicit Batch(std::vector<point>& batch) : points(batch) {}

  void work(const Operation& operation) {
    for (std::size_t start = next.fetch_add(pieceSize); start < points.size();
         start = next.fetch_add(pieceSize)) {
      applyOncePerRun(operation, points.data() + start, std::min(pieceSize, points.size() - start));
    }
  }

 private:
  std::vector<point>& points;
  std::atomic<std::size_t> next{0};
};

// Storage behind a block's last row may never have been touched; in pages of the usual size, two threads
// that touch it hold each other up for longer than the transformation takes.
void adviseLargePages(std::vector<point>& points) {
#ifdef MADV_HUGEPAGE
  const auto pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto first = reinterpret_cast<std::uintptr_t>(points.data());
  const std::uintptr_t start = (first + pageSize - 1) / pageSize * pageSize;
  const std::uintptr_t end = (first + points.size() * sizeof(point)) / pageSize * pageSize;
  if (start < end) {
    madvise(reinterpret_cast<void*>(start), end - start, MADV_HUGEPAGE); // advice: may be refused
  }
#else
  static_cast<void>(points);
#endif
}

std::jthread startHelper(Batch& batch, const Operation& operation) {
  try {
    return std::jthread([&batch, &operation] { batch.work(operation); });
  } catch (const std::system_error&) {
    return {}; // no thread to be had: the caller's own does it all
  }
}

void transformAll(Kept& kept, std::vector<point>& points) {
  Batch batch(points);
  std::jthread helper; // joined at the end of the function
  if (points.size() >= sharedBatchSize && std::thread::hardware_concurrency() > 1) {
    adviseLargePages(points);
    if (kept.helper == nullptr) {
      kept.helper = kept.own->clone();
    }
    if (kept.helper != nullptr) {
      helper = startHelper(batch, *kept.helper);
    }
  }
  batch.work(*kept.own);
}

std::string transformGuarded(const std::string& from, const std::string& to, std::vector<point>& points) {
  const std::string dataPath = Torvel::getEnv("PROJ_LIB");
  Kept& kept = keptByThread();
  if (kept.own == nullptr || !kept.own->serves(from, to, dataPath)) {
    kept = {};
    auto found = std::make_unique<Operation>(from, to, dataPath);
    if (!found->reason().empty()) {
      return found->reason();
    }
    kept.own = std::move(found);
  }
  transformAll(kept, points);
  return {};
}

} // namespace

std::string transform(const std::string& from, const std::string& to, std::vector<point>& points,
                      bool /*reserved*/) {
  try {
    return transformGuarded(from, to, points);
  } catch (const std::exception& failure) {
    return failure.what();
  } catch (...) {
    return "unknown failure";
  }
}

} // namespace Proj
