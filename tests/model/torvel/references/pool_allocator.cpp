// SPDX-License-Identifier: BSD-3-Clause
// Global allocation operators with a pool for one block size, in memory of a selectable kind.
#include "tests/model/torvel/references/pool_allocator.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr unsigned char dirt = 0xA5;

support::PoolMemory kind = support::PoolMemory::privateAnonymous;
std::size_t blockCount = 0;
void* block = nullptr; ///< the pool block in use; there is at most one

void* mapFile() {
  const int file = memfd_create("pool", 0);
  if (file < 0 || ftruncate(file, support::pooledBytes) != 0) {
    return MAP_FAILED;
  }
  void* const shared = mmap(nullptr, support::pooledBytes, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  if (shared == MAP_FAILED) {
    return MAP_FAILED;
  }
  std::memset(shared, dirt, support::pooledBytes);
  munmap(shared, support::pooledBytes);
  void* const mapped = mmap(nullptr, support::pooledBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE, file, 0);
  close(file);
  return mapped;
}

void* mapAnonymous(int sharing) {
  return mmap(nullptr, support::pooledBytes, PROT_READ | PROT_WRITE, MAP_ANONYMOUS | sharing, -1, 0);
}

void* mapBlock() {
  switch (kind) {
  case support::PoolMemory::privateAnonymous:
    return mapAnonymous(MAP_PRIVATE);
  case support::PoolMemory::sharedAnonymous:
    return mapAnonymous(MAP_SHARED);
  case support::PoolMemory::privateFile:
    return mapFile();
  }
  return MAP_FAILED;
}

void* takeFromPool() {
  void* const mapped = mapBlock();
  if (mapped == MAP_FAILED) {
    throw std::bad_alloc();
  }
  ++blockCount;
  block = mapped;
  return std::memset(mapped, dirt, support::pooledBytes);
}

} // namespace

namespace support {

void setPoolMemory(PoolMemory memory) {
  kind = memory;
}

std::size_t pooledBlockCount() {
  return blockCount;
}

} // namespace support

void* operator new(std::size_t bytes) {
  if (bytes == support::pooledBytes && block == nullptr) {
    return takeFromPool();
  }
  void* const memory = std::malloc(bytes == 0 ? 1 : bytes);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

void operator delete(void* memory) noexcept {
  if (memory != nullptr && memory == block) {
    munmap(memory, support::pooledBytes);
    block = nullptr;
    return;
  }
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}
