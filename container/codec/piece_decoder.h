// SPDX-License-Identifier: BSD-3-Clause
// Decodes pieces of a block straight into the caller's memory.
#pragma once

#include "container/codec/pieces.h"

#include <functional>
#include <memory>

namespace container::codec {

/// Memory that grows to what is asked of it and is not cleared.
class ScratchBytes {
 public:
  /// `count` bytes of any content; those of the call before are gone.
  std::byte* of(std::size_t count);

 private:
  std::unique_ptr<std::byte[]> bytes;
  std::size_t capacity = 0;
};

/// Decodes pieces. Keeps the memory of two pieces at most: one before its filter is removed, and one that a range needs
/// in part. Not thread-safe; each thread has its own, and several may decode pieces of one block.
class PieceDecoder {
 public:
  /// Brings the stored bytes of a piece, which stay valid until the next call.
  using Source = std::function<std::span<const std::byte>(std::uint32_t piece)>;

  /// Decodes one piece.
  ///
  /// \param header   as parseHeader() returned it
  /// \param piece    0 to header.pieces.size() - 1
  /// \param stored   the bytes of that piece
  /// \param records  receives header.records(piece) records, any alignment; may be the memory of `stored` where
  ///                 header.hasIntermediate(), else must not overlap it
  /// \errors  EncodingError where `stored` has another size or checksum than the header states, or is no such piece;
  ///          `records` then holds anything
  void decode(const PieceHeader& header, std::uint32_t piece, std::span<const std::byte> stored,
              std::byte* records);

  /// Decodes `count` records from record `first` on; asks for the pieces that hold them and no others, in order.
  ///
  /// \param records  receives the records, any alignment
  /// \errors  as decode(); std::out_of_range where the block has no such records; whatever `source` raises
  void decodeRange(const PieceHeader& header, std::uint64_t first, std::uint64_t count, const Source& source,
                   std::byte* records);

 private:
  void restoreScaled(const PieceHeader& header, const RecordShape& shape, const std::byte* filtered,
                     std::byte* records);

  Decompressor decompressor;
  ScratchBytes filteredPiece;
  ScratchBytes partialPiece;
  ScratchBytes integers;
};

} // namespace container::codec
