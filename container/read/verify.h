// SPDX-License-Identifier: BSD-3-Clause
// Checks every block of a database file.
#pragma once

#include "container/format/api.h"

#include <cstdint>
#include <functional>
#include <string>

namespace container {

/// What a check of a whole file found.
struct Verification {
  std::uint64_t blocks = 0;          ///< blocks looked at
  std::uint64_t bytes = 0;           ///< bytes of sound blocks
  std::uint64_t withoutChecksum = 0; ///< sound blocks that carry no checksum
  std::uint64_t findings = 0;        ///< damaged blocks, items and extents
  bool isCatalogueProtected = false; ///< whether a checksum covers attributes, items and the list of blocks
};

/// Reads every block of every attribute, every metadata item and the extents of the file at `path`; checks types, sizes
/// and checksums, and decodes encoded blocks. Passes each fault to `report` as (what, details), in the order of
/// attributes and blocks, then items, then extents, and continues after it.
/// \errors Error if the file cannot be opened or its catalogue contradicts itself
CONTAINER_API Verification
verify(const std::string& path,
       const std::function<void(const std::string& what, const std::string& details)>& report);

} // namespace container
