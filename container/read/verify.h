// SPDX-License-Identifier: BSD-3-Clause
// Checks every block of a database file.
#pragma once

#include "platform/client/api.h"

#include <cstdint>
#include <functional>
#include <string>

namespace riegl::rdb::embedded {

/// What a walk through a file has seen.
struct Verification {
  std::uint64_t blocks = 0;          ///< blocks looked at
  std::uint64_t bytes = 0;           ///< bytes of sound blocks
  std::uint64_t withoutChecksum = 0; ///< sound blocks that carry no checksum
  std::uint64_t findings = 0;        ///< damaged blocks and items
};

/// Reads every block of every attribute and every metadata item of the file at `path`, checks type, size and
/// checksum, and hands each fault to `report` as (what, details) in the order of attributes and blocks, then
/// items. It goes on after a fault.
/// \errors  riegl::rdb::Error if the file cannot be opened or its catalogue contradicts itself
RDB_API Verification
verify(const std::string& path,
       const std::function<void(const std::string& what, const std::string& details)>& report);

} // namespace riegl::rdb::embedded
