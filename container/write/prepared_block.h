// SPDX-License-Identifier: BSD-3-Clause
// What a block becomes in the file: its bytes, their checksum and the extents of its values. Internal to the container.
#pragma once

#include "container/codec/scaled.h"
#include "container/format/attribute.h"
#include "container/format/extent.h"
#include "container/write/writer.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace container {

/// A block that is ready to be inserted.
struct PreparedBlock {
  std::optional<std::vector<std::byte>> encoded; ///< nothing: the records are stored as they are
  std::uint32_t checksum = 0;                    ///< of the bytes that are stored
  std::vector<ComponentExtent> extents;
};

/// Finds the extents of a block, encodes it if that makes it smaller, and computes its checksum.
/// \param source  one scaling per component, or none
/// \threads safe
PreparedBlock prepareBlock(std::span<const unsigned char> records, const Attribute& attribute,
                           BlockEncoding encoding, std::span<const codec::Scaling> source);

} // namespace container
