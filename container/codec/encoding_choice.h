// SPDX-License-Identifier: BSD-3-Clause
// Chooses the filter, and scaled integers or not, that suit the values of a block.
#pragma once

#include "container/codec/piece_encoder.h"

#include <optional>

namespace container::codec {

/// What is fixed before the values are known.
struct EncodingWish {
  Codec codec = Codec::zlib;
  int level = 6;                      ///< see Compressor
  std::span<const Scaling> hint = {}; ///< scales that the source of the values states, or none
};

/// Chooses how a block is encoded, by encoding a sample of it in every way and comparing the sizes. Of two ways that
/// differ by less than 2 %, the one that decodes faster is chosen.
///
/// Takes about as long as encoding 1.5 MB, and for reals a pass over the block in search of a grid.
/// \param records  the records of `shape`, any alignment
/// \param shape    of the block
/// \return  what encodeBlock() takes; nothing where no way saves 2 % of the bytes: such a block is best stored as it is
/// \errors  std::invalid_argument for a level that the codec does not have, or a hint of another number of components
/// \threads safe
std::optional<EncodingOptions> chooseEncoding(const std::byte* records, const BlockShape& shape,
                                              const EncodingWish& wish);

} // namespace container::codec
