// SPDX-License-Identifier: BSD-3-Clause
// Reads the pieces of an encoded block. Internal to the container.
#pragma once

#include "container/codec/piece_decoder.h"
#include "container/format/block_layout.h"
#include "container/read/column.h"

#include <cstddef>
#include <cstdint>
#include <limits>

namespace container {

class BlockReader;

/// The header of one encoded block, and the piece of it that was decoded last. Keeps the memory of two pieces at most,
/// stored bytes and steps of decoding included. Not thread-safe: one per BlockReader. Several may read pieces of one block.
class EncodedBlock {
 public:
  /// Goes to a block that the column's index names encoded, and reads its header unless it is the one of the last call.
  /// \errors Error for a header that contradicts the catalogue or has another checksum
  void open(BlockReader& reader, const Column& column, const BlockLayout& layout, std::uint64_t number);
  /// The header of the block that was opened last.
  const codec::PieceHeader& header() const { return opened; }
  /// Decodes a piece to `records`, which takes all of them. \errors Error for a damaged piece
  void decode(BlockReader& reader, std::uint32_t piece, unsigned char* records);
  /// All records of a piece; they stay until the next call of this function for another piece or block.
  /// \errors as decode()
  const unsigned char* recordsOf(BlockReader& reader, std::uint32_t piece);

 private:
  static constexpr std::uint64_t none = std::numeric_limits<std::uint64_t>::max();

  bool readHeader(BlockReader& reader, const codec::BlockShape& shape, bool straight);
  void decode(BlockReader& reader, std::uint32_t piece, std::byte* stored, std::byte* records);
  bool decodeFrom(BlockReader& reader, std::uint32_t piece, std::byte* stored, std::byte* records,
                  bool straight);
  void goTo(BlockReader& reader);

  codec::PieceDecoder decoder;
  codec::ScratchBytes storedPiece, decodedPiece;
  codec::PieceHeader opened;
  const Column* column = nullptr;
  const BlockLayout* layout = nullptr;
  std::uint64_t block = none;
  std::uint64_t keptPiece = none; ///< which piece `kept` points to
  std::byte* kept = nullptr;
};

} // namespace container
