// SPDX-License-Identifier: BSD-3-Clause
// The 44 arrays, eleven element types times four ranks, behind one interface that a test iterates over.
#pragma once

#include "arrays/nimbra/mem_array.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <vector>

namespace everyarray {

using ChunkPointer = Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>;
using Nimbra::DynamicSize;
using Nimbra::MemBase;

/// A chunk whose element k has the scalars k, k + 1, ...
template <class T>
Torvel::StrongPtr<Torvel::TypedChunk<T>, Torvel::ChunkBase> samples(std::uint64_t count) {
  using Scalar = typename Nimbra::ElementTraits<T>::Scalar;
  const Torvel::StrongPtr<Torvel::TypedChunk<T>, Torvel::ChunkBase> chunk(new Torvel::Chunk<T>(count));
  auto* const scalars = static_cast<Scalar*>(chunk->data());
  constexpr auto width = static_cast<std::uint64_t>(Nimbra::componentCount<T>);
  for (std::uint64_t i = 0; i < count * width; ++i) {
    scalars[i] = static_cast<Scalar>(i / width + i % width);
  }
  return chunk;
}

/// Operations of one of the 44 arrays that need its element type or its rank.
struct Kind {
  std::string name;
  int rank;
  const std::type_info* type;
  std::size_t elementBytes;
  ChunkPointer (*chunk)(std::uint64_t count);
  MemBase::Pointer (*make)(const ChunkPointer& chunk, const DynamicSize& extents);
  MemBase::Pointer (*makeNew)(const MemBase::Pointer& array, const DynamicSize& extents);
  MemBase::Pointer (*copyPart)(const MemBase::Pointer& array, const DynamicSize& first,
                               const DynamicSize& part);
  bool (*endsAre)(const MemBase::Pointer& array, const void* first, const void* last);
  bool (*makesChunks)(const MemBase::Pointer& array);
  bool (*facesAgree)(const MemBase::Pointer& array);
  bool (*nothingThere)(const MemBase::Pointer& array);
};

template <int N, class T>
struct Asked {
  using Array = Nimbra::MemArray<N, T>;
  using Working = Torvel::StrongPtr<Nimbra::ReferencingMemArray<N, T>, Torvel::Cacheable>;
  using Typed = Torvel::StrongPtr<Nimbra::TypedArray<T>, Torvel::Cacheable>;

  static Nimbra::MultiIndex<N> index(const DynamicSize& size) {
    Nimbra::MultiIndex<N> all;
    std::copy_n(size.extents, N, all.begin());
    return all;
  }
  static ChunkPointer chunk(std::uint64_t count) { return samples<T>(count); }
  static MemBase::Pointer make(const ChunkPointer& chunk, const DynamicSize& extents) {
    return new Array(chunk, index(extents), nullptr);
  }
  static MemBase::Pointer makeNew(const MemBase::Pointer& array, const DynamicSize& extents) {
    return Working(array)->newArray(index(extents), nullptr);
  }
  static MemBase::Pointer copyPart(const MemBase::Pointer& array, const DynamicSize& first,
                                   const DynamicSize& part) {
    return Working(array)->copyHyperslabAt(index(first), index(part), nullptr);
  }
  static bool endsAre(const MemBase::Pointer& array, const void* first, const void* last) {
    const Typed typed(array);
    const T found[2] = {typed->firstValue(), typed->lastValue()};
    return std::memcmp(&found[0], first, sizeof(T)) == 0 && std::memcmp(&found[1], last, sizeof(T)) == 0;
  }
  static bool makesChunks(const MemBase::Pointer& array) {
    return static_cast<bool>(Torvel::StrongPtr<Array, Torvel::Cacheable>(array));
  }
  /// Whether the array's iterators and chunks are the same through each of its interfaces.
  static bool facesAgree(const MemBase::Pointer& array) {
    const Working working(array);
    const Typed typed(array);
    const Nimbra::TypedArray<T>& constant = *typed;
    const Nimbra::HyperslabParameters* const view = working.get();
    return array->iterator() == view && typed->elements() == view && constant.elements() == view &&
           typed->typedChunk().get() == array->chunkBase().get() && typed->elementType() == typeid(T) &&
           typed->elementCount() == working->extentProduct();
  }
  static bool nothingThere(const MemBase::Pointer& array) {
    const Working working(array);
    return working->nothing().get() == nullptr && working->creator == nullptr && working->reservedA() == 0 &&
           working->reservedB() == 0 && array->createdBy().get() == nullptr;
  }

  static Kind kind() {
    return {std::to_string(N) + " x " + Torvel::Typename(typeid(T)),
            N,
            &typeid(T),
            sizeof(T),
            &chunk,
            &make,
            &makeNew,
            &copyPart,
            &endsAre,
            &makesChunks,
            &facesAgree,
            &nothingThere};
  }
};

template <class... T>
std::vector<Kind> kindsOf(std::type_identity<std::tuple<T...>>) {
  std::vector<Kind> kinds;
  (kinds.insert(kinds.end(),
                {Asked<1, T>::kind(), Asked<2, T>::kind(), Asked<3, T>::kind(), Asked<4, T>::kind()}),
   ...);
  return kinds;
}

/// The first `rank` of the extents 2, 3, 4, 5, each changed by `change`.
inline DynamicSize smallExtents(int rank, int change = 0) {
  std::vector<std::uint64_t> extents;
  for (int i = 0; i < rank; ++i) {
    extents.push_back(static_cast<std::uint64_t>(i + 2 + change));
  }
  return {rank, extents.data()};
}

inline DynamicSize allOf(int rank, std::uint64_t extent) {
  const std::vector<std::uint64_t> extents(static_cast<std::size_t>(rank), extent);
  return {rank, extents.data()};
}

inline std::uint64_t totalOf(const DynamicSize& size) {
  std::uint64_t total = 1;
  for (int i = 0; i < size.rank; ++i) {
    total *= size.extents[i];
  }
  return total;
}

/// Calls `check` with the kind, and an array of small extents over a chunk of samples.
template <class Check>
void forEveryArray(Check check) {
  const std::vector<Kind> kinds = kindsOf(std::type_identity<Nimbra::ElementTypes>());
  ASSERT_EQ(kinds.size(), 44U);
  for (const Kind& kind : kinds) {
    SCOPED_TRACE(kind.name);
    const DynamicSize extents = smallExtents(kind.rank);
    const ChunkPointer chunk = kind.chunk(totalOf(extents));
    const MemBase::Pointer array = kind.make(chunk, extents);
    check(kind, array, chunk);
  }
}

/// The address of an element of a chunk.
inline std::byte* elementAt(const ChunkPointer& chunk, std::uint64_t index) {
  return static_cast<std::byte*>(chunk->data()) + index * chunk->elementBytes();
}

inline bool sameElements(const ChunkPointer& left, const ChunkPointer& right) {
  return left && right && left->elementCount() == right->elementCount() &&
         std::memcmp(left->data(), right->data(), left->elementCount() * left->elementBytes()) == 0;
}

} // namespace everyarray
