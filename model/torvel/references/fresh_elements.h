// SPDX-License-Identifier: BSD-3-Clause
// How a chunk's vector gets its first elements; model/torvel/references/chunk.h is the only user.
//
// A `std::vector` has no way to take elements that are zero already: its constructor writes every one. With this
// library's standard vector the length can be set from a derived class, over storage that
// model/torvel/references/fresh_pages.h has made read as zero. Other standard libraries, the checking forms of this one and
// RDB2NIMBRA_PORTABLE_ELEMENTS take the plain way; the values are the same.
#pragma once

#include "model/torvel/references/fresh_pages.h"

#include <cstddef>
#include <stdexcept>
#include <type_traits>
#include <vector>

#if defined(__GLIBCXX__) && !defined(_GLIBCXX_DEBUG) && !defined(_GLIBCXX_SANITIZE_VECTOR) &&                \
    !defined(RDB2NIMBRA_PORTABLE_ELEMENTS)
#define RDB2NIMBRA_VECTOR_LENGTH_CAN_BE_SET
#endif

namespace Torvel {

#ifdef RDB2NIMBRA_VECTOR_LENGTH_CAN_BE_SET

namespace detail {

/// Reaches what a vector protects.
template <class T>
class VectorLength : public std::vector<T> {
 public:
  /// Sets the length of a vector whose storage already holds `count` elements.
  static void set(std::vector<T>& elements, std::size_t count) {
    constexpr auto parts = &VectorLength::_M_impl;
    (elements.*parts)._M_finish = (elements.*parts)._M_start + count;
  }
};

} // namespace detail

#endif

/// Gives an empty vector `count` elements: zero for the scalar types; what types hold whose default constructor does
/// nothing is unspecified.
/// \errors  std::length_error "cannot create std::vector larger than max_size()", std::bad_alloc
template <class T>
void makeFreshElements(std::vector<T>& elements, std::size_t count) {
#ifdef RDB2NIMBRA_VECTOR_LENGTH_CAN_BE_SET
  if constexpr (std::is_trivially_copyable_v<T>) {
    if (count >= lazyBlockBytes / sizeof(T)) {
      if (count > elements.max_size()) {
        throw std::length_error("cannot create std::vector larger than max_size()");
      }
      elements.reserve(count);
      makeZeroBlock(elements.data(), count * sizeof(T));
      detail::VectorLength<T>::set(elements, count);
      return;
    }
  }
#endif
  elements = std::vector<T>(count);
}

/// Gives the memory behind the last element back, as far as whole pages go; capacity and addresses stay.
template <class T>
void releaseUnusedPages(std::vector<T>& elements) {
  if (elements.size() < elements.capacity()) {
    releasePages(elements.data() + elements.size(), (elements.capacity() - elements.size()) * sizeof(T));
  }
}

} // namespace Torvel
