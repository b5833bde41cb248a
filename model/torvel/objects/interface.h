// SPDX-License-Identifier: BSD-3-Clause
// Interfaces that hang on objects: their counted base and the objects that carry them.
#pragma once

#include "model/torvel/references/pointer.h"

#include <typeinfo>

namespace Torvel {

class Intercube;

/// What an iteration over the interfaces of an object is given.
class TORVEL_API InterfaceIterationParameter : public ReferenceBase<InterfaceIterationParameter> {
 public:
  InterfaceIterationParameter();
  ~InterfaceIterationParameter() override;
};

/// Counted base of everything that can be attached to an object as an interface.
class TORVEL_API InterfaceBase : public ReferenceBase<InterfaceBase> {
 public:
  ~InterfaceBase() override;

  /// The interface that this object is an implementation of.
  virtual const std::type_info& interfaceType() const = 0;
  /// Applies the interface to an object it hangs on. Does nothing here. \returns whether anything was done
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

/// The caller's sink for the progress of a load.
class TORVEL_API LoaderProgress : public Interface<LoaderProgress> {
 public:
  LoaderProgress();
  ~LoaderProgress() override;
};

} // namespace Torvel
