// SPDX-License-Identifier: BSD-3-Clause
// Pages for bytes that are about to be written. Internal to this room.
#pragma once

#include <cstddef>

namespace riegl::rdb::embedded {

/// Asks the system for the pages under the next `bytes` bytes, all of which the caller is about to write. A hint: what
/// the memory holds stays, and without it the pages come one by one as they are written.
void populate(void* to, std::size_t bytes);

} // namespace riegl::rdb::embedded
