// SPDX-License-Identifier: BSD-3-Clause
// Implements the deferred construction of cacheable objects.
#include "model/torvel/objects/cacheable.h"

namespace Torvel {

Cacheable::Cacheable() : ReferenceBase<Cacheable>(this) {}
Cacheable::~Cacheable() = default;

const std::type_info& Cacheable::DomainType() const {
  return typeid(void);
}
const std::type_info& Cacheable::CreatorType() const {
  return typeid(void);
}

void Cacheable::CacheableDeferredConstructor() {
  complete = true;
  saveInterfaces();
}

void Cacheable::PreDestructor() {
  complete = false;
}

Creature::Creature() : ReferenceBase<Creature>(this) {}
Creature::~Creature() = default;

} // namespace Torvel
