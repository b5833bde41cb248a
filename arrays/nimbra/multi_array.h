// SPDX-License-Identifier: BSD-3-Clause
// Adds extents to the iterator chain of arrays/nimbra/hyperslab.h, so that elements have an index of rank N.
#pragma once

#include "arrays/nimbra/hyperslab.h"

#include <array>
#include <cstdint>
#include <limits>
#include <utility>

namespace Nimbra {

/// An index or extents of rank N, in elements; entry 0 runs fastest.
template <int N>
using MultiIndex = std::array<std::uint64_t, static_cast<std::size_t>(N)>;

/// \return the product of the extents; the largest 64-bit number where the product exceeds it, so that an
/// allocation of so many elements fails
template <std::size_t Rank>
std::uint64_t elementTotal(const std::array<std::uint64_t, Rank>& extents) {
  std::uint64_t total = 1;
  bool beyond = false;
  for (const std::uint64_t extent : extents) {
    if (extent == 0) {
      return 0;
    }
    beyond = __builtin_mul_overflow(total, extent, &total) || beyond;
  }
  return beyond ? std::numeric_limits<std::uint64_t>::max() : total;
}

/// \return the index of the last element, 0 in each rank whose extent is 0
template <std::size_t Rank>
std::array<std::uint64_t, Rank> lastIndex(const std::array<std::uint64_t, Rank>& extents) {
  std::array<std::uint64_t, Rank> last{};
  for (std::size_t rank = 0; rank < Rank; ++rank) {
    last[rank] = extents[rank] == 0 ? 0 : extents[rank] - 1;
  }
  return last;
}

/// The iterator chain with extents.
template <int N, class T>
class MultiArrayBase : public CreativeIterator<T> {
 public:
  MultiIndex<N> size{}; ///< extents in elements
};

template <int N, class T, class Sequence = std::make_integer_sequence<unsigned long long, N>>
class MultiArray;

/// Access with one argument per rank.
template <int N, class T, unsigned long long... Ranks>
class MultiArray<N, T, std::integer_sequence<unsigned long long, Ranks...>> : public MultiArrayBase<N, T> {
  template <unsigned long long>
  using Index = std::uint64_t;

 public:
  /// \return the element at the given index, by the iterator rule; bounds are not checked
  T at(Index<Ranks>... index) const { return at(MultiIndex<N>{index...}); }
  T at(const MultiIndex<N>& index) const { return this->elementAt(index, this->size); }
};

} // namespace Nimbra
