// SPDX-License-Identifier: BSD-3-Clause
// How many records a block has, in both imports.
#pragma once

namespace Riegl {

/// Records that a query is asked for at a time, and elements of every column buffer. A fragment on the grid
/// is one block.
inline constexpr unsigned int recordsPerBlock = 5000000;

} // namespace Riegl
