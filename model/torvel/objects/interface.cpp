// SPDX-License-Identifier: BSD-3-Clause
// Defines the virtual tables of interfaces.
#include "model/torvel/objects/interface.h"

namespace Torvel {

InterfaceIterationParameter::InterfaceIterationParameter()
    : ReferenceBase<InterfaceIterationParameter>(this) {}
InterfaceIterationParameter::~InterfaceIterationParameter() = default;

InterfaceBase::InterfaceBase() : ReferenceBase<InterfaceBase>(this) {}
InterfaceBase::~InterfaceBase() = default;

bool InterfaceBase::apply_const(const Intercube&,
                                const StrongPtr<InterfaceIterationParameter, InterfaceIterationParameter>&) {
  return false;
}

bool InterfaceBase::apply(Intercube&,
                          const StrongPtr<InterfaceIterationParameter, InterfaceIterationParameter>&) {
  return false;
}

Intercube::Intercube() = default;
Intercube::~Intercube() = default;

LoaderProgress::LoaderProgress() = default;
LoaderProgress::~LoaderProgress() = default;

} // namespace Torvel
