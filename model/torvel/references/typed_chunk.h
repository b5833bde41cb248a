// SPDX-License-Identifier: BSD-3-Clause
// The typed faces of a memory block, following the inheritance of its element type.
#pragma once

#include "model/torvel/references/chunk_base.h"

#include <span>
#include <type_traits>
#include <vector>

namespace Torvel {

/// How an element type is built: `Base` is the element type that it derives from (void for none), `storable`
/// tells whether chunks of it exist; a layout that isn't storable only serves to reach derived elements.
/// Specialised beside each composed element type.
template <class T>
struct ElementLayout {
  using Base = void;
  static constexpr bool storable = true;
};

/// Access to the elements of a chunk at the layout B that they all begin with.
template <class B>
class TORVEL_API TypedChunkBase : public ChunkBase {
 public:
  /// The elements as B: as many as the chunk holds, each of exactly the size of B.
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

/// A chunk of elements that are a T or derive from one.
template <class T>
class TORVEL_API TypedChunk : public detail::ChunkParent<T>::type {
 protected:
  TypedChunk() = default;
};

/// A chunk of elements that are exactly T.
template <class T>
requires(ElementLayout<T>::storable) class TORVEL_API TypedChunk<T> : public detail::ChunkParent<T>::type {
 public:
  /// The elements as a vector. Whoever changes its length moves the elements away from under every array.
  virtual std::vector<T>& values() = 0;
  virtual const std::vector<T>& values() const = 0;
  /// As `create`, as a typed chunk.
  virtual StrongPtr<TypedChunk<T>, ChunkBase> createTyped(std::size_t count, bool reserveOnly) const = 0;

 protected:
  TypedChunk() = default;
};

} // namespace Torvel
