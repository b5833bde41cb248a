// SPDX-License-Identifier: BSD-3-Clause
// The CRC-32 of a block, as zlib and PNG compute it. Internal to the container.
#pragma once

#include <cstddef>
#include <cstdint>

namespace container {

/// The checksum of all bytes so far. \param previous  that of the bytes before these, 0 at the start
std::uint32_t crc32(std::uint32_t previous, const void* data, std::size_t bytes);

} // namespace container
