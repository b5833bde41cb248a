// SPDX-License-Identifier: BSD-3-Clause
// Objects that a cache may hold, and objects that create others.
#pragma once

#include "model/torvel/core/counters.h"
#include "model/torvel/objects/interface.h"

#include <cstdint>
#include <typeinfo>

namespace Torvel {

/// An object that a cache may hold. Its construction is finished by its first strong hold and not by its
/// constructor, so that virtual operations are available to that step.
class TORVEL_API Cacheable : public ReferenceBase<Cacheable> {
 public:
  ~Cacheable() override;

  /// Bytes of memory that the object stands for.
  virtual std::uint64_t memorySize() const = 0;
  /// Lets every known creator of save interfaces see the object.
  virtual void saveInterfaces() = 0;
  /// Type of the domain that the object belongs to; void here.
  virtual const std::type_info& DomainType() const;
  /// Type of what created the object; void here.
  virtual const std::type_info& CreatorType() const;

  /// Called by the strong hold that finds the count at 0: the object gets its save interfaces.
  void CacheableDeferredConstructor();
  /// Called between the last strong hold and the destructor.
  void PreDestructor();

  /// True between the deferred construction and the pre-destruction.
  bool isComplete() const { return complete; }

 protected:
  Cacheable();

 private:
  bool complete = false;
};

/// An object that can create others and knows when it last changed.
class TORVEL_API Creature : public ReferenceBase<Creature>, public Intercube, public Ageable {
 public:
  ~Creature() override;

 protected:
  Creature();
};

} // namespace Torvel
