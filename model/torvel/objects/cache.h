// SPDX-License-Identifier: BSD-3-Clause
// Through what a field holds its arrays.
#pragma once

#include "model/torvel/objects/cacheable.h"

namespace Torvel {

class Cache;

/// Counted base of all caches.
class TORVEL_API CacheBase : public ReferenceBase<CacheBase> {
 public:
  ~CacheBase() override;

 protected:
  CacheBase();
};

/// A cache decides how an object is held for those who asked to keep it.
class TORVEL_API Cache : public CacheBase {
 public:
  ~Cache() override;

  /// What a field keeps for `object`: a strong hold for as long as the field wants the object.
  virtual StrongPtr<Cacheable, Cacheable> keep(const StrongPtr<Cacheable, Cacheable>& object) = 0;

  /// The process-wide in-memory cache. It holds nothing itself: an object lives as long as its holders.
  static StrongPtr<Cache, CacheBase>& MemCache();

 protected:
  Cache();
};

} // namespace Torvel
