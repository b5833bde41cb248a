// SPDX-License-Identifier: BSD-3-Clause
// The checksum of long runs of bytes in wide registers, on processors that have them. Internal to this room.
// Checksum.cpp is the only user and has the plain way beside it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace riegl::rdb::embedded {

/// The bytes that one step takes.
inline constexpr std::size_t checksumStepBytes = 256;

/// Whether this processor multiplies polynomials in registers of 512 bits; found out once.
bool hasWideMultiplication();

/// The checksum as crc32 has it, over `steps` steps, at least one; only where hasWideMultiplication() says so.
std::uint32_t wideCrc32(std::uint32_t previous, const unsigned char* data, std::size_t steps);

} // namespace riegl::rdb::embedded
