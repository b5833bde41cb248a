// SPDX-License-Identifier: BSD-3-Clause
// Implements the in-memory cache of the process.
#include "model/torvel/objects/cache.h"

namespace Torvel {

namespace {

/// Returns the object and keeps no reference, so that its memory is released with the field.
class MemoryCache final : public Cache {
 public:
  StrongPtr<Cacheable, Cacheable> keep(const StrongPtr<Cacheable, Cacheable>& object) override {
    return object;
  }
};

} // namespace

CacheBase::CacheBase() : ReferenceBase<CacheBase>(this) {}
CacheBase::~CacheBase() = default;

Cache::Cache() = default;
Cache::~Cache() = default;

StrongPtr<Cache, CacheBase>& Cache::MemCache() {
  static StrongPtr<Cache, CacheBase> cache(new MemoryCache);
  return cache;
}

} // namespace Torvel
