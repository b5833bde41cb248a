// SPDX-License-Identifier: BSD-3-Clause
// Counts, chunks and the families of the framework.
#include "model/torvel/core/typename.h"
#include "model/torvel/objects/cache.h"
#include "model/torvel/objects/interface.h"
#include "model/torvel/objects/save_registry.h"
#include "model/torvel/references/chunk.h"
#include "quarry/model/cacheable.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace quarry {

void Tally::drop() noexcept {
  if (holders_.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    delete this;
  }
}

bool Tally::own() noexcept {
  std::uint64_t seen = owners_.load(std::memory_order_relaxed);
  do {
    if ((seen & gone) != 0) {
      return false;
    }
  } while (
      !owners_.compare_exchange_weak(seen, seen + 1, std::memory_order_acquire, std::memory_order_relaxed));
  return true;
}

void Tally::disown() noexcept {
  std::uint64_t seen = owners_.load(std::memory_order_relaxed);
  std::uint64_t next = 0;
  do {
    if ((seen & gone) != 0) {
      return; // a static object that ended before its pointers
    }
    next = seen == 1 ? gone : seen - 1;
  } while (!owners_.compare_exchange_weak(seen, next, std::memory_order_acq_rel, std::memory_order_relaxed));
  if (next == gone) {
    destroy_(object_);
  }
}

void Tally::close() noexcept {
  owners_.fetch_or(gone, std::memory_order_acq_rel);
}

} // namespace quarry

namespace Torvel {

std::string Typename(const std::type_info& type) {
  int status = 0;
  const std::unique_ptr<char, void (*)(void*)> text(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), std::free);
  return text ? text.get() : type.name();
}

ChunkBase::ChunkBase() : ReferenceBase<ChunkBase>(this) {}
ChunkBase::~ChunkBase() = default;

InterfaceBase::InterfaceBase() : ReferenceBase<InterfaceBase>(this) {}
InterfaceBase::~InterfaceBase() = default;

LoaderProgress::~LoaderProgress() = default;
void LoaderProgress::progress(double) {}

CacheBase::CacheBase() : ReferenceBase<CacheBase>(this) {}
CacheBase::~CacheBase() = default;

StrongPtr<Cache, CacheBase>& Cache::MemCache() {
  static StrongPtr<Cache, CacheBase> cache(new Cache);
  return cache;
}

SaveInterfaceCreatorBase::SaveInterfaceCreatorBase() : ReferenceBase<SaveInterfaceCreatorBase>(this) {}
SaveInterfaceCreatorBase::~SaveInterfaceCreatorBase() = default;

SaveRegistryBase::SaveRegistryBase() = default;
SaveRegistryBase::~SaveRegistryBase() = default;
void SaveRegistryBase::traverseCreators(const std::type_info&) {}

Cacheable::Cacheable() : ReferenceBase<Cacheable>(this) {}
Cacheable::~Cacheable() = default;

Creature::Creature() : ReferenceBase<Creature>(this) {}
Creature::~Creature() = default;

void releasePages(void* first, void* last) noexcept {
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const std::uintptr_t from = (reinterpret_cast<std::uintptr_t>(first) + page - 1) / page * page;
  const std::uintptr_t to = reinterpret_cast<std::uintptr_t>(last) / page * page;
  if (from < to) {
    madvise(reinterpret_cast<void*>(from), to - from, MADV_DONTNEED);
  }
}

} // namespace Torvel
