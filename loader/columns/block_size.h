// SPDX-License-Identifier: BSD-3-Clause
// Records per block, in both imports.
#pragma once

namespace Riegl {

/// Records requested by each call of `next`, and elements of every column buffer. A block becomes one
/// fragment on the grid.
inline constexpr unsigned int recordsPerBlock = 5000000;

} // namespace Riegl
