// SPDX-License-Identifier: BSD-3-Clause
// Global allocation operators that fill every block with a pattern, to show which bytes were written.
#include "tests/model/torvel/references/pattern_allocator.h"

#include <cstdlib>
#include <cstring>
#include <new>

void* operator new(std::size_t bytes) {
  void* const memory = std::malloc(bytes == 0 ? 1 : bytes);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return std::memset(memory, support::freshPattern, bytes);
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
