// SPDX-License-Identifier: BSD-3-Clause
// Families of objects that a cache holds, and of objects that make others.
#pragma once

#include "model/torvel/references/typed_chunk.h"

namespace Torvel {

class TORVEL_API Cacheable : public ReferenceBase<Cacheable> {
 public:
  ~Cacheable() override;
  virtual std::uint64_t memorySize() const = 0;
  virtual void saveInterfaces() = 0;

 protected:
  Cacheable();
};

class TORVEL_API Creature : public ReferenceBase<Creature> {
 public:
  ~Creature() override;

 protected:
  Creature();
};

} // namespace Torvel
