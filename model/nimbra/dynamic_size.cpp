// SPDX-License-Identifier: BSD-3-Clause
// Copies and frees extents.
#include "model/nimbra/dynamic_size.h"

#include <algorithm>
#include <utility>

namespace Nimbra {

DynamicSize::DynamicSize(int extentCount, const std::uint64_t* source) : rank(extentCount) {
  if (extentCount > 0) {
    extents = new std::uint64_t[static_cast<std::size_t>(extentCount)];
    std::copy_n(source, extentCount, extents);
  }
}

DynamicSize::DynamicSize(std::initializer_list<std::uint64_t> extentsInOrder)
    : DynamicSize(static_cast<int>(extentsInOrder.size()), extentsInOrder.begin()) {}

DynamicSize::DynamicSize(const DynamicSize& other) : DynamicSize(other.rank, other.extents) {}

DynamicSize& DynamicSize::operator=(const DynamicSize& other) {
  DynamicSize copy(other);
  std::swap(rank, copy.rank);
  std::swap(extents, copy.extents);
  return *this;
}

DynamicSize::~DynamicSize() {
  delete[] extents;
}

} // namespace Nimbra
