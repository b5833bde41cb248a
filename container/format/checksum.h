// SPDX-License-Identifier: BSD-3-Clause
// The CRC-32 that guards a block, as zlib and PNG compute it. Internal to this room.
#pragma once

#include <cstddef>
#include <cstdint>

namespace riegl::rdb::embedded {

/// The checksum of all bytes so far: `previous` is that of the bytes before these, 0 at the start.
std::uint32_t crc32(std::uint32_t previous, const void* data, std::size_t bytes);

} // namespace riegl::rdb::embedded
