// SPDX-License-Identifier: BSD-3-Clause
// Interfaces: objects that serve others.
#pragma once

#include "model/torvel/references/typed_chunk.h"

namespace Torvel {

class TORVEL_API InterfaceBase : public ReferenceBase<InterfaceBase> {
 public:
  ~InterfaceBase() override;

 protected:
  InterfaceBase();
};

/// The interface X.
template <class X>
class TORVEL_API Interface : public InterfaceBase {};

/// Receives the progress of a load.
class TORVEL_API LoaderProgress : public Interface<LoaderProgress> {
 public:
  ~LoaderProgress() override;
  virtual void progress(double fraction);
};

} // namespace Torvel
