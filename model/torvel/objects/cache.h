// SPDX-License-Identifier: BSD-3-Clause
// Caches, which decide how a field holds its arrays.
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

/// Decides how an object is held on behalf of a field.
class TORVEL_API Cache : public CacheBase {
 public:
  ~Cache() override;

  /// \param object  what the field wants to keep
  /// \return what the field stores for it: a strong reference, which need not be to `object` itself
  virtual StrongPtr<Cacheable, Cacheable> keep(const StrongPtr<Cacheable, Cacheable>& object) = 0;

  /// \return the in-memory cache of the process, which keeps no reference of its own
  /// \threads safe
  static StrongPtr<Cache, CacheBase>& MemCache();

 protected:
  Cache();
};

} // namespace Torvel
