// SPDX-License-Identifier: BSD-3-Clause
// The checksum of long runs of bytes in wide registers, on processors that have them. Internal to the container.
// checksum.cpp is the only user and has the portable fallback.
#pragma once

#include <cstddef>
#include <cstdint>

namespace container {

/// Bytes per step.
inline constexpr std::size_t checksumStepBytes = 256;

/// Whether this processor multiplies polynomials in registers of 512 bits; determined once.
bool hasWideMultiplication();

/// The checksum as crc32 computes it, over `steps` steps, at least one. Call it only if hasWideMultiplication().
std::uint32_t wideCrc32(std::uint32_t previous, const unsigned char* data, std::size_t steps);

} // namespace container
