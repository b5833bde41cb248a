// SPDX-License-Identifier: BSD-3-Clause
// Creators of save interfaces. This model has none.
#pragma once

#include "model/torvel/references/typed_chunk.h"

namespace Torvel {

class TORVEL_API SaveInterfaceCreatorBase : public ReferenceBase<SaveInterfaceCreatorBase> {
 public:
  ~SaveInterfaceCreatorBase() override;

 protected:
  SaveInterfaceCreatorBase();
};

class TORVEL_API SaveRegistryBase {
 public:
  SaveRegistryBase();
  virtual ~SaveRegistryBase();
  void traverseCreators(const std::type_info& kind);

 protected:
  virtual void use(SaveInterfaceCreatorBase& creator) = 0;
};

} // namespace Torvel
