// SPDX-License-Identifier: BSD-3-Clause
// The slot of a virtual function in the table of its class, by the Itanium C++ ABI.
#pragma once

#include <cstddef>
#include <cstring>

namespace support {

/// Slot of a virtual member function, 0 for the first; -1 for a function that isn't virtual.
template <class Member>
std::ptrdiff_t slotOf(Member member) {
  struct {
    std::ptrdiff_t pointer;
    std::ptrdiff_t adjustment;
  } parts;
  static_assert(sizeof member == sizeof parts);
  std::memcpy(&parts, &member, sizeof parts);
  const auto width = static_cast<std::ptrdiff_t>(sizeof(void*));
  return parts.pointer % width == 1 ? (parts.pointer - 1) / width : -1;
}

} // namespace support
