// SPDX-License-Identifier: BSD-3-Clause
// Counted objects that a cache may hold, and counted objects that create others.
#pragma once

#include "model/torvel/core/counters.h"
#include "model/torvel/objects/interface.h"

#include <cstdint>
#include <typeinfo>

namespace Torvel {

/// An object that a cache may hold. Its first strong hold finishes its construction, because virtual
/// operations are not available in its constructor.
///
/// \threads the counts may be changed from several threads, the object is not protected
class TORVEL_API Cacheable : public ReferenceBase<Cacheable> {
 public:
  ~Cacheable() override;

  /// \return the bytes of memory that the object keeps in use
  virtual std::uint64_t memorySize() const = 0;
  /// Passes the object to every registered creator of save interfaces of its kind.
  virtual void saveInterfaces() = 0;
  /// \return the type of the domain that the object belongs to; void here
  virtual const std::type_info& DomainType() const;
  /// \return the type of the object's creator; void here
  virtual const std::type_info& CreatorType() const;

  /// Calls `saveInterfaces`. Called by the strong hold that finds the strong count at 0.
  /// \errors  those of `saveInterfaces`; the hold is then released
  void CacheableDeferredConstructor();
  /// Called after the release of the last strong hold, before the destructor.
  void PreDestructor();

  /// True from `CacheableDeferredConstructor` until `PreDestructor`.
  bool isComplete() const { return complete; }

 protected:
  Cacheable();

 private:
  bool complete = false;
};

/// An object that can create others, with the time of its last change.
class TORVEL_API Creature : public ReferenceBase<Creature>, public Intercube, public Ageable {
 public:
  ~Creature() override;

 protected:
  Creature();
};

} // namespace Torvel
