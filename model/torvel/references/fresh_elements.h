// SPDX-License-Identifier: BSD-3-Clause
// Creates and trims the elements of a vector without touching pages that nobody uses.
//
// The constructor of a `std::vector` writes every element. With libstdc++ the length can be set from a
// derived class, over storage that already reads as zero (makeZeroBlock). Other standard libraries,
// libstdc++'s debug modes and RDB2NIMBRA_PORTABLE_ELEMENTS use the constructor; the values are the same.
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

/// Gives access to the protected members of a vector.
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

/// Gives an empty vector its elements.
///
/// \param elements  receives the elements: zeros for the scalar types; unspecified values for types whose
/// default
///                  constructor does nothing
/// \param count  number of elements
/// \errors  std::length_error "cannot create std::vector larger than max_size()", std::bad_alloc
/// \threads safe on distinct vectors
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

/// Releases the whole pages between the last element and the end of the storage; capacity and addresses stay.
/// \threads safe on distinct vectors
template <class T>
void releaseUnusedPages(std::vector<T>& elements) {
  if (elements.size() < elements.capacity()) {
    releasePages(elements.data() + elements.size(), (elements.capacity() - elements.size()) * sizeof(T));
  }
}

} // namespace Torvel
