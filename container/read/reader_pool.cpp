// SPDX-License-Identifier: BSD-3-Clause
// The readers of one file, one per thread.
#include "container/read/reader_pool.h"

#include "container/format/processors.h"

#include <algorithm>
#include <utility>

namespace container {
namespace {

std::size_t threadsFor(unsigned int threadCount) {
  constexpr unsigned int most = 64;
  return threadCount != 0 ? std::min(threadCount, most) : std::clamp(usableProcessors(), 1U, 2U);
}

} // namespace

ReaderPool::ReaderPool(const std::string& path, unsigned int threadCount)
    : mostReaders(threadsFor(threadCount)) {
  readers.push_back(std::make_unique<BlockReader>(path));
}

bool ReaderPool::addReader() {
  try {
    const std::string& path = first().connection().path();
    auto reader = std::make_unique<BlockReader>(path);
    const bool same = reader->connection().identity() == first().connection().identity() &&
                      requireRegularFile(path) == reader->connection().identity();
    if (same) {
      readers.push_back(std::move(reader));
    }
    return same;
  } catch (const Error&) {
    return false; // the file was renamed or removed; the readers that are open go on
  }
}

const std::vector<std::unique_ptr<BlockReader>>& ReaderPool::readersFor(std::size_t wanted) {
  while (readers.size() < std::min(wanted, mostReaders)) {
    if (!addReader()) {
      mostReaders = readers.size();
    }
  }
  return readers;
}

} // namespace container
