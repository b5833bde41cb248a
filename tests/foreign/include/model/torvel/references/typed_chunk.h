// SPDX-License-Identifier: BSD-3-Clause
// Blocks of elements, as their users see them.
#pragma once

#include "model/torvel/core/api.h"
#include "quarry/model/pointers.h"

#include <cstddef>
#include <cstdint>
#include <typeinfo>
#include <vector>

namespace Torvel {

/// A block of elements whose type is known at run time only.
class TORVEL_API ChunkBase : public ReferenceBase<ChunkBase> {
 public:
  ~ChunkBase() override;
  virtual std::size_t elementCount() const = 0;
  virtual std::size_t elementBytes() const = 0;
  virtual void* data() = 0;
  virtual StrongPtr<ChunkBase, ChunkBase> clone() const = 0;

 protected:
  ChunkBase();
};

/// Whether chunks of T exist, and the type that T derives from.
template <class T>
struct ElementLayout {
  using Base = void;
  static constexpr bool storable = true;
};

/// A chunk of elements T.
template <class T>
class TORVEL_API TypedChunk : public ChunkBase {
 public:
  virtual std::vector<T>& values() = 0;
};

} // namespace Torvel
