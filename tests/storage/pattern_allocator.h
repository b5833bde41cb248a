// What new memory holds in a program that tests/storage/pattern_allocator.cpp is linked into.
#pragma once

namespace support {

inline constexpr unsigned char freshPattern = 0xA5;

} // namespace support
