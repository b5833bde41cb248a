// SPDX-License-Identifier: BSD-3-Clause
// Memory arrays: views of rank 1 to 4 onto a chunk, which a field holds.
//
// Longer than other headers, because each shared object instantiates the whole family: one class with every
// virtual operation of an array, in the order of the table of virtual functions.
#pragma once

#include "arrays/nimbra/element_records.h"
#include "arrays/nimbra/element_text.h"
#include "arrays/nimbra/multi_array.h"
#include "arrays/nimbra/save_registry.h"
#include "model/nimbra/mem_base.h"
#include "model/torvel/references/chunk.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <typeinfo>

namespace Nimbra {

/// Operations of an array of rank N.
template <int N>
class TORVEL_API MemArrayBase : public virtual MemBase {
 public:
  ~MemArrayBase() override = default;
  int rank() const override = 0;
  /// \return the number of elements, the product of the extents
  virtual std::uint64_t extentProduct() const = 0;
  /// Makes a new array with a chunk of its own.
  /// \errors  std::length_error, std::bad_alloc
  virtual Pointer newArray(const MultiIndex<N>& extents, const Creator& origin) const = 0;
  /// Makes a new array with a copy of a part of the elements, each read by the iterator rule.
  /// \param first  index of the part's first element
  /// \param part  extents of the part; the caller guarantees that it lies within the array
  /// \errors  std::length_error, std::bad_alloc
  virtual Pointer copyHyperslabAt(const MultiIndex<N>& first, const MultiIndex<N>& part,
                                  const Creator& origin) const = 0;
  Pointer copyHyperslab(const DynamicSize& first, const DynamicSize& part,
                        const Creator& origin) const override = 0;
  DynamicSize dimensions() const override = 0;
  /// \return null, always
  virtual Pointer nothing() const = 0;

 protected:
  MemArrayBase() = default;
};

/// Operations of an array of elements T.
template <class T>
class TORVEL_API TypedArray : public virtual MemBase {
 public:
  /// \return the elements at index 0 and at the last index, by the iterator rule. An array without a creator
  /// must have an element.
  virtual T firstValue() const = 0;
  virtual T lastValue() const = 0;
  /// \return the view with its memory; owned by the array
  virtual ElementIterator<T>* elements() = 0;
  virtual const ElementIterator<T>* elements() const = 0;
  /// \return the chunk of the view, null where there is none
  virtual Torvel::StrongPtr<Torvel::TypedChunk<T>, Torvel::ChunkBase> typedChunk() const = 0;
  Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase> chunkBase() const override = 0;
  const std::type_info& elementType() const override = 0;
  ~TypedArray() override = default;

 protected:
  TypedArray() = default;
};

template <int N, class T>
class MemArray;

/// An array over a chunk that it shares by a strong pointer. It keeps the address of the first element, so
/// the length of the chunk must not change afterwards.
///
/// \threads not safe: one thread fills the chunk, the array is made afterwards
template <int N, class T>
class TORVEL_API ReferencingMemArray : public MemArrayBase<N>, public MultiArray<N, T>, public TypedArray<T> {
 public:
  using Pointer = MemBase::Pointer;
  using Creator = MemBase::Creator;
  using TypedChunkPointer = Torvel::StrongPtr<Torvel::TypedChunk<T>, Torvel::ChunkBase>;
  using ChunkPointer = Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>;

  /// Takes constant time; reads and copies no element.
  /// \param memory  the chunk; may be null
  /// \param extents  in elements, the fastest running first; elements of the chunk beyond their product are
  /// the tail
  /// \param origin  the array's creator; null for none
  /// \errors  std::bad_alloc
  ReferencingMemArray(const TypedChunkPointer& memory, const MultiIndex<N>& extents, const Creator& origin)
      : MemBase(elementRecord<T>(), origin), chunk(memory) {
    const std::uint64_t held = chunk ? chunk->elementCount() : 0;
    this->count = held;
    this->limit = held;
    this->data = chunk ? static_cast<T*>(chunk->data()) : nullptr;
    this->size = extents;
    const std::uint64_t wanted = elementTotal(extents);
    this->tail = wanted < held ? held - wanted : 0;
  }
  /// As above, with the extent of rank 1 as a number.
  ReferencingMemArray(const TypedChunkPointer& memory, std::uint64_t extent,
                      const Creator& origin) requires(N == 1)
      : ReferencingMemArray(memory, MultiIndex<N>{extent}, origin) {}
  ~ReferencingMemArray() override = default;

  int rank() const override { return N; }
  std::uint64_t extentProduct() const override { return elementTotal(this->size); }
  Pointer newArray(const MultiIndex<N>& extents, const Creator& origin) const override;
  Pointer copyHyperslabAt(const MultiIndex<N>& first, const MultiIndex<N>& part,
                          const Creator& origin) const override;
  Pointer copyHyperslab(const DynamicSize& first, const DynamicSize& part,
                        const Creator& origin) const override;
  DynamicSize dimensions() const override { return DynamicSize(N, this->size.data()); }
  Pointer nothing() const override { return Pointer(); }

  bool replaceContents(const ChunkPointer& source) override {
    const TypedChunkPointer typed(source);
    if (!chunk || !typed || typed->elementCount() != chunk->elementCount()) {
      return false;
    }
    chunk->values() = typed->values();
    return true;
  }
  ChunkPointer chunkBase() const override { return chunk; }
  std::uint64_t memorySize() const override {
    return chunk ? chunk->elementCount() * chunk->elementBytes() : 0;
  }
  std::uint64_t elementCount() const override { return extentProduct(); }
  std::string elementText(std::uint64_t number) const override {
    return chunk && number < chunk->elementCount() ? elementAsText<T>(chunk->values()[number])
                                                   : std::string();
  }
  void saveInterfaces() override {
    Torvel::SaveRegistry<MemBase> registry(*this);
    registry.traverseCreators(typeid(MemBase));
  }
  const std::type_info& elementType() const override { return typeid(T); }
  HyperslabParameters* iterator() override { return this; }
  void* rawData() const override { return this->data; }
  int reservedA() const override { return 0; }
  int reservedB() const override { return 0; }
  T firstValue() const override { return this->at(MultiIndex<N>{}); }
  T lastValue() const override { return this->at(lastIndex(this->size)); }
  const ElementIterator<T>* elements() const override { return this; }
  ElementIterator<T>* elements() override { return this; }
  Pointer self() override { return Pointer(static_cast<MemBase*>(this)); }
  Pointer arrayOver(const ChunkPointer& foreign, const Creator& origin) const override;
  Pointer deepCopy() const override;
  Pointer shallowView(int depth, const Creator& origin) override;
  TypedChunkPointer typedChunk() const override { return chunk; }

 private:
  const TypedChunkPointer chunk;
};

/// An array of a field, over a given chunk or one of its own.
template <int N, class T>
class TORVEL_API MemArray final : public ReferencingMemArray<N, T> {
 public:
  using typename ReferencingMemArray<N, T>::Creator;
  using typename ReferencingMemArray<N, T>::TypedChunkPointer;

  /// True once the element type is registered; see arrays/nimbra/registration.h
  inline static bool registered = false;

  /// As `ReferencingMemArray`; counts itself where the element type is registered.
  MemArray(const TypedChunkPointer& memory, const MultiIndex<N>& extents, const Creator& origin)
      : MemBase(elementRecord<T>(), origin), ReferencingMemArray<N, T>(memory, extents, origin) {
    if (registered) {
      countArray();
    }
  }

  /// Makes a chunk of its own first, with the product of the extents as element count.
  /// \errors  std::length_error "cannot create std::vector larger than max_size()", std::bad_alloc
  MemArray(const MultiIndex<N>& extents, const Creator& origin)
      : MemArray(freshChunk(extents), extents, origin) {}

  /// As above, with the extent of rank 1 as a number.
  MemArray(const TypedChunkPointer& memory, std::uint64_t extent, const Creator& origin) requires(N == 1)
      : MemArray(memory, MultiIndex<N>{extent}, origin) {}
  MemArray(std::uint64_t extent, const Creator& origin) requires(N == 1)
      : MemArray(MultiIndex<N>{extent}, origin) {}

  ~MemArray() override = default;

 private:
  // A load and a store, not one step: the count is for diagnostics, and an increase that is lost is accepted.
  static void countArray() {
    const std::atomic_ref<int> count(MemBase::RegisteredTypes);
    count.store(count.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
  }

  // A function of its own: GCC 12 leaks the memory of a chunk whose constructor raises in the arguments of a
  // delegating constructor.
  static TypedChunkPointer freshChunk(const MultiIndex<N>& extents) {
    return TypedChunkPointer(new Torvel::Chunk<T>(elementTotal(extents)));
  }
};

template <int N, class T>
MemBase::Pointer ReferencingMemArray<N, T>::newArray(const MultiIndex<N>& extents,
                                                     const Creator& origin) const {
  return Pointer(new MemArray<N, T>(extents, origin));
}

template <int N, class T>
MemBase::Pointer ReferencingMemArray<N, T>::copyHyperslabAt(const MultiIndex<N>& first,
                                                            const MultiIndex<N>& part,
                                                            const Creator& origin) const {
  const Torvel::StrongPtr<MemArray<N, T>, Torvel::Cacheable> copy(new MemArray<N, T>(part, origin));
  const std::uint64_t total = elementTotal(part);
  MultiIndex<N> offset{};
  for (std::uint64_t i = 0; i < total; ++i) {
    MultiIndex<N> source = first;
    for (std::size_t rank = 0; rank < source.size(); ++rank) {
      source[rank] += offset[rank];
    }
    *copy->place(i) = this->at(source);
    for (std::size_t rank = 0; rank < offset.size() && ++offset[rank] == part[rank]; ++rank) {
      offset[rank] = 0;
    }
  }
  return copy;
}

template <int N, class T>
MemBase::Pointer ReferencingMemArray<N, T>::copyHyperslab(const DynamicSize& first, const DynamicSize& part,
                                                          const Creator& origin) const {
  if (first.rank != N || part.rank != N) {
    return Pointer();
  }
  MultiIndex<N> from;
  MultiIndex<N> extents;
  for (std::size_t rank = 0; rank < from.size(); ++rank) {
    from[rank] = first.extents[rank];
    extents[rank] = part.extents[rank];
  }
  return copyHyperslabAt(from, extents, origin);
}

template <int N, class T>
MemBase::Pointer ReferencingMemArray<N, T>::arrayOver(const ChunkPointer& foreign,
                                                      const Creator& origin) const {
  const TypedChunkPointer typed(foreign);
  if (!typed || typed->elementCount() != extentProduct()) {
    return Pointer();
  }
  return Pointer(new MemArray<N, T>(typed, this->size, origin));
}

template <int N, class T>
MemBase::Pointer ReferencingMemArray<N, T>::deepCopy() const {
  if (!chunk) {
    return Pointer();
  }
  const TypedChunkPointer copy(chunk->clone());
  return Pointer(new MemArray<N, T>(copy, this->size, nullptr));
}

template <int N, class T>
MemBase::Pointer ReferencingMemArray<N, T>::shallowView(int depth, const Creator& origin) {
  if (depth > 0) {
    return Pointer();
  }
  auto* const view = new ReferencingMemArray(chunk, this->size, origin);
  const auto excess = [](std::uint64_t whole, std::uint64_t part) { return whole > part ? whole - part : 0; };
  view->count = this->count;
  view->stride = 1;
  view->limit = this->count;
  view->start = 0;
  view->data = this->data;
  view->tail = excess(this->count, this->available());
  const std::uint64_t extent = view->extentProduct();
  if (extent < excess(view->count, view->tail)) {
    view->tail = excess(view->count, extent);
  }
  // Held only now: the first strong hold passes the view to the creators of save interfaces.
  return Pointer(view);
}

} // namespace Nimbra
