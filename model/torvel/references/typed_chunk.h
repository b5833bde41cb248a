// SPDX-License-Identifier: BSD-3-Clause
// Typed interfaces of a memory block, which follow the inheritance of its element type.
#pragma once

#include "model/torvel/references/chunk_base.h"

#include <span>
#include <type_traits>
#include <vector>

namespace Torvel {

/// Layout of an element type. `Base` is the element type that it derives from, void for none. `storable` is
/// true where chunks of it exist; another layout only gives access to elements that derive from it. Composed
/// element types specialise this template.
template <class T>
struct ElementLayout {
  using Base = void;
  static constexpr bool storable = true;
};

/// Access to the elements of a chunk as B, the layout that all of them begin with.
///
/// \threads the elements are not protected
template <class B>
class TORVEL_API TypedChunkBase : public ChunkBase {
 public:
  /// \return all elements of the chunk as B, which has the size of an element; owned by the chunk, valid
  /// until the number of elements changes
  std::span<B> elements() { return {static_cast<B*>(this->data()), this->elementCount()}; }
  std::span<const B> elements() const { return {static_cast<const B*>(this->data()), this->elementCount()}; }

 protected:
  TypedChunkBase() = default;
};

template <class T>
class TypedChunk;

namespace detail {

template <class T>
struct ChunkParent {
  using type = TypedChunk<typename ElementLayout<T>::Base>;
};

template <class T>
requires std::is_void_v<typename ElementLayout<T>::Base>
struct ChunkParent<T> {
  using type = TypedChunkBase<T>;
};

} // namespace detail

/// A chunk whose elements are a T or derive from T.
template <class T>
class TORVEL_API TypedChunk : public detail::ChunkParent<T>::type {
 protected:
  TypedChunk() = default;
};

/// A chunk of elements that are exactly T.
template <class T>
requires(ElementLayout<T>::storable) class TORVEL_API TypedChunk<T> : public detail::ChunkParent<T>::type {
 public:
  /// \return the elements as a vector, owned by the chunk. A change of its length invalidates every array
  /// over the chunk.
  virtual std::vector<T>& values() = 0;
  virtual const std::vector<T>& values() const = 0;
  /// As `ChunkBase::create`, with a typed result.
  virtual StrongPtr<TypedChunk<T>, ChunkBase> createTyped(std::size_t count, bool reserveOnly) const = 0;

 protected:
  TypedChunk() = default;
};

} // namespace Torvel
