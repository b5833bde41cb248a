// SPDX-License-Identifier: BSD-3-Clause
// Global allocation operators, one call of which fails where a test requests it.
#include "tests/support/failing_allocator.h"

#include <cstdlib>
#include <new>

namespace {
thread_local bool counting = false;
thread_local long made = 0;
thread_local long alive = 0;
thread_local long failing = -1; ///< number of the allocation that fails, from 0
} // namespace

void* operator new(std::size_t bytes) {
  const bool fails = counting && made++ == failing;
  void* const memory = fails ? nullptr : std::malloc(bytes == 0 ? 1 : bytes);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  ++alive;
  return memory;
}

void operator delete(void* memory) noexcept {
  alive -= memory != nullptr ? 1 : 0;
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}

namespace support {

void beginAllocations(long successes) {
  made = 0;
  failing = successes;
  counting = true;
}

void endAllocations() {
  counting = false;
}

long allocationsMade() {
  return made;
}

long allocationsAlive() {
  return alive;
}

} // namespace support
