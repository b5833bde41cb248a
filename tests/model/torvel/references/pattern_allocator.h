// SPDX-License-Identifier: BSD-3-Clause
// Content of new memory in a program with tests/model/torvel/references/pattern_allocator.cpp
#pragma once

namespace support {

inline constexpr unsigned char freshPattern = 0xA5;

} // namespace support
