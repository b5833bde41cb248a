// How a chunk's vector gets its first elements; storage/torvel/chunk.h is the only user.
#pragma once

#include <cstddef>
#include <vector>

namespace Torvel {

/// Gives an empty vector `count` elements: zero for the scalar types; types whose default constructor does
/// nothing stay as the allocator gives them.
/// \errors  std::length_error "cannot create std::vector larger than max_size()", std::bad_alloc
template <class T>
void makeFreshElements(std::vector<T>& elements, std::size_t count) {
  elements = std::vector<T>(count);
}

} // namespace Torvel
