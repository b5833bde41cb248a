// SPDX-License-Identifier: BSD-3-Clause
// The CRC-32 of bytes that are known part by part.
#pragma once

#include <cstddef>
#include <cstdint>

namespace container {

/// The CRC-32 (as zlib and PNG compute it) of all bytes so far.
///
/// \param previous  that of the bytes before these, 0 at the start
/// \param data      `bytes` bytes
/// \threads safe
std::uint32_t continuedChecksum(std::uint32_t previous, const void* data, std::size_t bytes);

/// The CRC-32 of two runs of bytes in a row, from the checksums of both; no byte is looked at.
///
/// \param first        checksum of the first run
/// \param second       checksum of the second run
/// \param secondBytes  length of the second run in bytes
/// \threads safe
std::uint32_t joinedChecksum(std::uint32_t first, std::uint32_t second, std::uint64_t secondBytes);

} // namespace container
