// SPDX-License-Identifier: BSD-3-Clause
// Finds the grid that the reals of a block were made from.
#pragma once

#include "container/codec/pieces.h"

#include <optional>

namespace container::codec {

/// Finds scales and offsets that give every value of a block back, bit for bit.
///
/// Tries the hint first, then scales of 1, 0.1 and so on to 0.0000001 with offsets that suit them: 0, round numbers near
/// the values, the first and the least value. Each candidate is tried on a few values, and what they leave on all.
/// \param records  the records of `shape`, any alignment
/// \param shape    of the block
/// \param hint     what the source of the values says: one per component, or none
/// \return  one per component; nothing where a component has none, for integers and for blocks without records
/// \errors  std::invalid_argument for a hint of another number of components
/// \threads safe
std::optional<std::vector<Scaling>> findScaling(const std::byte* records, const BlockShape& shape,
                                                std::span<const Scaling> hint);

} // namespace container::codec
