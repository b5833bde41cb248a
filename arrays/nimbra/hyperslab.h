// SPDX-License-Identifier: BSD-3-Clause
// The view that an array has of its memory block, and how an index becomes an element.
#pragma once

#include "model/torvel/core/api.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Nimbra {

/// A view of a block of elements; all counts and distances are in elements, not bytes.
struct HyperslabParameters {
  std::uint64_t count = 0;  ///< elements in the underlying block
  std::uint64_t stride = 1; ///< distance of neighbouring elements
  std::uint64_t limit = 0;  ///< last bound of the block
  std::uint64_t start = 0;  ///< index of the first element of the view
  std::uint64_t tail = 0;   ///< elements cut off at the end of the view

  /// Elements that the view gives access to.
  std::uint64_t available() const {
    const std::uint64_t held = stride == 1 ? limit : (stride == 0 ? 0 : count / stride);
    const std::uint64_t cut = start + tail;
    return held > cut ? held - cut : 0;
  }
};

/// Makes elements on demand in place of a memory block.
template <class T>
class ElementCreator {
 public:
  /// The creator of the next lower rank at `index` of the highest one. Lives as long as this one.
  virtual ElementCreator* slice(std::uint64_t index) = 0;
  /// The element at an index of rank 1.
  virtual T element(std::uint64_t index) = 0;

 protected:
  ~ElementCreator() = default;
};

/// A hyperslab with its memory, or with what makes its elements.
template <class T>
class ElementIterator : public HyperslabParameters {
 public:
  T* data = nullptr;                    ///< first element of the block; not read where `creator` is set
  ElementCreator<T>* creator = nullptr; ///< not owned; null where the elements lie in memory

  /// Place of element `index` in memory.
  T* place(std::uint64_t index) const { return data + (index + start) * stride; }
};

/// Rank-1 access by the iterator rule.
template <class T>
class IteratorBase : public ElementIterator<T> {
 public:
  /// The T at `data + (index + start) * stride`, or what the creator gives for `index`.
  T element(std::uint64_t index) const {
    return this->creator == nullptr ? *this->place(index) : this->creator->element(index);
  }
};

/// Iteration over all elements of the view in order.
template <class T>
class Iterator : public IteratorBase<T> {
 public:
  /// Calls `visit` with each available element.
  template <class Visit>
  void forEach(Visit visit) const {
    const std::uint64_t total = this->available();
    for (std::uint64_t i = 0; i < total; ++i) {
      visit(this->element(i));
    }
  }
};

/// Access by an index of any rank, the first one running fastest.
template <class T>
class CreativeIterator : public Iterator<T> {
 public:
  /// With a creator, slices are taken from the highest rank down, and the element from the last slice.
  template <std::size_t Rank>
  T elementAt(const std::array<std::uint64_t, Rank>& index,
              const std::array<std::uint64_t, Rank>& extents) const {
    if (this->creator == nullptr) {
      return *this->place(linearIndex(index, extents));
    }
    ElementCreator<T>* slice = this->creator;
    for (std::size_t rank = Rank; rank > 1; --rank) {
      slice = slice->slice(index[rank - 1]);
    }
    return slice->element(index[0]);
  }

  /// i + e0 * (j + e1 * (k + ...)).
  template <std::size_t Rank>
  static std::uint64_t linearIndex(const std::array<std::uint64_t, Rank>& index,
                                   const std::array<std::uint64_t, Rank>& extents) {
    std::uint64_t linear = 0;
    for (std::size_t rank = Rank; rank > 0; --rank) {
      linear = linear * extents[rank - 1] + index[rank - 1];
    }
    return linear;
  }
};

} // namespace Nimbra
