// SPDX-License-Identifier: BSD-3-Clause
// What new memory holds in a program that tests/model/torvel/references/pattern_allocator.cpp is linked into.
#pragma once

namespace support {

inline constexpr unsigned char freshPattern = 0xA5;

} // namespace support
