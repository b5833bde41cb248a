// SPDX-License-Identifier: BSD-3-Clause
// The process's allocation operators, which remember the largest request.
#include "tests/support/largest_allocation.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {
thread_local std::size_t largest = 0;
} // namespace

void* operator new(std::size_t bytes) {
  largest = std::max(largest, bytes);
  void* const memory = std::malloc(bytes == 0 ? 1 : bytes);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace support {

void forgetAllocations() {
  largest = 0;
}

std::size_t largestAllocation() {
  return largest;
}

} // namespace support
