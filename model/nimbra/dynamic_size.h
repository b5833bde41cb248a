// SPDX-License-Identifier: BSD-3-Clause
// Extents of an array whose rank is only known at run time.
#pragma once

#include "model/torvel/core/api.h"

#include <cstdint>
#include <initializer_list>

namespace Nimbra {

/// A rank and that many 64-bit extents, in an array of its own.
struct TORVEL_API DynamicSize {
  int rank = 0;
  std::uint64_t* extents = nullptr;

  DynamicSize() = default;
  /// \param extentsInOrder  the fastest running extent first
  DynamicSize(std::initializer_list<std::uint64_t> extentsInOrder);
  /// \param source  at least `extentCount` values
  DynamicSize(int extentCount, const std::uint64_t* source);
  DynamicSize(const DynamicSize& other);
  DynamicSize& operator=(const DynamicSize& other);
  ~DynamicSize();
};

} // namespace Nimbra
