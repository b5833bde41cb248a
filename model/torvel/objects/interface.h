// SPDX-License-Identifier: BSD-3-Clause
// Interfaces that are attached to objects, and the objects that carry them.
#pragma once

#include "model/torvel/references/pointer.h"

#include <typeinfo>

namespace Torvel {

class Intercube;

/// Parameter of an iteration over the interfaces of an object.
class TORVEL_API InterfaceIterationParameter : public ReferenceBase<InterfaceIterationParameter> {
 public:
  InterfaceIterationParameter();
  ~InterfaceIterationParameter() override;
};

/// Counted base of all interfaces.
class TORVEL_API InterfaceBase : public ReferenceBase<InterfaceBase> {
 public:
  ~InterfaceBase() override;

  /// \return the type of the interface that this object implements
  virtual const std::type_info& interfaceType() const = 0;
  /// Applies the interface to the object that it is attached to. Does nothing here.
  /// \return whether anything was done
  virtual bool
  apply_const(const Intercube& object,
              const StrongPtr<InterfaceIterationParameter, InterfaceIterationParameter>& parameter);
  virtual bool apply(Intercube& object,
                     const StrongPtr<InterfaceIterationParameter, InterfaceIterationParameter>& parameter);

 protected:
  InterfaceBase();
};

/// Base of the interface X.
template <class X>
class TORVEL_API Interface : public InterfaceBase {
 public:
  const std::type_info& interfaceType() const override { return typeid(X); }
};

/// An object that interfaces can be attached to.
class TORVEL_API Intercube {
 public:
  virtual ~Intercube();

 protected:
  Intercube();
};

/// Receives the progress of a load from the caller's side; the library calls no operation of it.
class TORVEL_API LoaderProgress : public Interface<LoaderProgress> {
 public:
  LoaderProgress();
  ~LoaderProgress() override;
};

} // namespace Torvel
