// SPDX-License-Identifier: BSD-3-Clause
// Objects that others own: the counted containers that grids and fields are held through.
#pragma once

#include "model/torvel/objects/cacheable.h"

namespace Nimbra {

/// What the children of a space have in common.
class ChildrenProperties {};
/// What the holders of created arrays have in common.
class CreativeArrayBaseContainerBase {};

/// Base of everything that spans a space: grids.
class TORVEL_API BaseSpace {
 public:
  virtual ~BaseSpace();
};

/// Something that can create arrays on demand.
class TORVEL_API CreativeArrayBase : public Torvel::Creature {
 public:
  ~CreativeArrayBase() override;
};

/// An object that others own and that knows when it last changed.
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
