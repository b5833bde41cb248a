// SPDX-License-Identifier: BSD-3-Clause
// Runs an operation over points and computes a run of equal points once.
#pragma once

#include "platform/transformation/operation.h"

namespace Proj {

/// Applies `operation` to `count` points in place. Neighbours with the same bits are computed once and
/// copied: the storage behind the last row of a block is one such run, and may be most of the block.
void applyOncePerRun(const Operation& operation, Quillon::PhysicalSpace::point* points, std::size_t count);

} // namespace Proj
