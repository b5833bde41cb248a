// SPDX-License-Identifier: BSD-3-Clause
// The counted classes through which grids and fields are held.
#pragma once

#include "model/torvel/objects/cacheable.h"

namespace Nimbra {

/// Tag of the children of a space.
class ChildrenProperties {};
/// Tag of the holders of created arrays.
class CreativeArrayBaseContainerBase {};

/// Base of grids.
class TORVEL_API BaseSpace {
 public:
  virtual ~BaseSpace();
};

/// Creates arrays on demand.
class TORVEL_API CreativeArrayBase : public Torvel::Creature {
 public:
  ~CreativeArrayBase() override;
};

/// An object that others own, with the time of its last change.
template <class Owned, class Properties>
class TORVEL_API Ownable : public Torvel::Ageable {
 public:
  /// The class that carries the counts of an owned object.
  class TORVEL_API Container : public Torvel::ReferenceBase<Container> {
   public:
    ~Container() override = default;

   protected:
    Container() : Torvel::ReferenceBase<Container>(this) {}
  };

  virtual ~Ownable() = default;

 protected:
  Ownable() = default;
};

} // namespace Nimbra
