// SPDX-License-Identifier: BSD-3-Clause
// The view of an array onto its memory block, and the rule from an index to an element.
#pragma once

#include "model/torvel/core/api.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Nimbra {

/// A view of a block of elements. All counts and distances are in elements, not bytes.
///
/// \threads not safe: no class of this file is protected
struct HyperslabParameters {
  std::uint64_t count = 0;  ///< elements in the underlying block
  std::uint64_t stride = 1; ///< distance of neighbouring elements
  std::uint64_t limit = 0;  ///< last bound of the block
  std::uint64_t start = 0;  ///< index of the first element of the view
  std::uint64_t tail = 0;   ///< elements cut off at the end of the view

  /// \return the number of elements that the view gives access to
  std::uint64_t available() const {
    const std::uint64_t held = stride == 1 ? limit : (stride == 0 ? 0 : count / stride);
    const std::uint64_t cut = start + tail;
    return held > cut ? held - cut : 0;
  }
};

/// Makes elements on demand, instead of a memory block that holds them.
template <class T>
class ElementCreator {
 public:
  /// \return the creator of the next lower rank at `index` of the highest rank; owned by this one
  virtual ElementCreator* slice(std::uint64_t index) = 0;
  /// \return the element at an index of rank 1
  virtual T element(std::uint64_t index) = 0;

 protected:
  ~ElementCreator() = default;
};

/// A hyperslab with its memory or its creator of elements.
template <class T>
class ElementIterator : public HyperslabParameters {
 public:
  T* data = nullptr;                    ///< first element of the block; not read where `creator` is set
  ElementCreator<T>* creator = nullptr; ///< not owned; null where the elements lie in memory

  /// \return the place of element `index` in memory, by the rule of rank 1; needs `data`
  T* place(std::uint64_t index) const { return data + (index + start) * stride; }
};

/// Rank-1 access by the iterator rule.
template <class T>
class IteratorBase : public ElementIterator<T> {
 public:
  /// \return the element at `data + (index + start) * stride`, or the creator's element at `index`; bounds
  /// are not checked
  T element(std::uint64_t index) const {
    return this->creator == nullptr ? *this->place(index) : this->creator->element(index);
  }
};

/// Iteration over all elements of the view in order.
template <class T>
class Iterator : public IteratorBase<T> {
 public:
  /// Calls `visit` with each available element, in order of the index.
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
  /// With a creator, takes slices from the highest rank down, and the element from the last slice.
  /// \param index  one index per rank, below `extents`; bounds are not checked
  /// \param extents  in elements, the fastest running first
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

  /// \return i + e0 * (j + e1 * (k + ...)) for the index (i, j, k, ...) and the extents (e0, e1, ...)
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
