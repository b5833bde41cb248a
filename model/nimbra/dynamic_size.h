// SPDX-License-Identifier: BSD-3-Clause
// Extents of an array whose rank is known at run time only.
#pragma once

#include "model/torvel/core/api.h"

#include <cstdint>
#include <initializer_list>

namespace Nimbra {

/// A rank and that many extents. It owns the extents.
struct TORVEL_API DynamicSize {
  int rank = 0;                     ///< number of extents
  std::uint64_t* extents = nullptr; ///< owned, made with new[]; in elements, the fastest running first

  DynamicSize() = default;
  /// \param extentsInOrder  the fastest running extent first
  /// \errors  std::bad_alloc
  DynamicSize(std::initializer_list<std::uint64_t> extentsInOrder);
  /// \param source  `extentCount` values, copied
  DynamicSize(int extentCount, const std::uint64_t* source);
  DynamicSize(const DynamicSize& other);
  DynamicSize& operator=(const DynamicSize& other);
  ~DynamicSize();
};

} // namespace Nimbra
