// SPDX-License-Identifier: BSD-3-Clause
// Caches of arrays. There is one, which keeps all in memory.
#pragma once

#include "model/torvel/references/typed_chunk.h"

namespace Torvel {

class TORVEL_API CacheBase : public ReferenceBase<CacheBase> {
 public:
  ~CacheBase() override;

 protected:
  CacheBase();
};

class TORVEL_API Cache : public CacheBase {
 public:
  static StrongPtr<Cache, CacheBase>& MemCache();
};

} // namespace Torvel
