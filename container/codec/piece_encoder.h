// SPDX-License-Identifier: BSD-3-Clause
// Encodes a block as pieces.
#pragma once

#include "container/codec/pieces.h"

namespace container::codec {

/// The decoded bytes that a piece has about, unless told otherwise.
inline constexpr std::size_t usualPieceBytes = 262144;

/// How a block is encoded.
struct EncodingOptions {
  Filter filter = Filter::shuffle;
  Codec codec = Codec::zlib;
  int level = 6;                     ///< see Compressor
  std::vector<Scaling> scaling = {}; ///< one per component, or none
  std::uint32_t recordsPerPiece = 0; ///< 0: as many as take usualPieceBytes decoded, at least one
};

/// Encodes a block: the bytes of its `data`, in the encoding `pieces`.
///
/// Needs the memory of the result and of two pieces. A block may be encoded by each thread.
/// \param records  the records of `shape`, little-endian, without gaps, any alignment
/// \param shape    of the block
/// \return  header and pieces
/// \errors  std::invalid_argument: a level that the codec does not have, scaling of another number of components, scaling
///          that does not give every value back bit for bit, pieces that are too large
/// \threads safe
std::vector<std::byte> encodeBlock(const std::byte* records, const BlockShape& shape,
                                   const EncodingOptions& options);

} // namespace container::codec
