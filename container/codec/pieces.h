// SPDX-License-Identifier: BSD-3-Clause
// The header of an encoded block: how its records are divided into pieces, and where each piece is.
#pragma once

#include "container/codec/compression.h"
#include "container/codec/filters.h"
#include "container/codec/scaled.h"
#include "container/format/value_format.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace container::codec {

/// What the catalogue knows of a block: its records as they are stored without encoding.
struct BlockShape {
  ValueFormat format;
  std::uint64_t length = 1; ///< values per record, at least 1
  std::uint64_t records = 0;
};

/// Where a piece is, counted in bytes from the first byte of the block, and the CRC-32 of its bytes.
struct StoredPiece {
  std::uint64_t position = 0;
  std::uint32_t bytes = 0;
  std::uint32_t checksum = 0;
};

/// A header that has passed every check: a piece can be decoded in memory that its stored bytes account for.
struct PieceHeader {
  BlockShape shape;
  std::uint32_t recordsPerPiece = 1; ///< the last piece has the rest
  Filter filter = Filter::none;
  Codec codec = Codec::none;
  std::vector<Scaling> scaling; ///< one per component, none where the pieces hold the values themselves
  std::vector<StoredPiece> pieces;
  std::uint32_t checksum =
      0; ///< the CRC-32 of the whole block, joined from those of the header and the pieces

  bool isScaled() const { return !scaling.empty(); }
  /// Whether a piece is decompressed to memory of its own before it becomes records.
  bool hasIntermediate() const { return codec != Codec::none && (filter != Filter::none || isScaled()); }
  std::uint64_t firstRecord(std::uint64_t piece) const { return piece * recordsPerPiece; }
  std::uint64_t records(std::uint64_t piece) const;
  /// Values in a piece as its filter sees them: of the stored type, or 32-bit integers where they are scaled.
  RecordShape filteredShape(std::uint64_t piece) const;
  std::size_t recordBytes() const { return static_cast<std::size_t>(shape.length) * shape.format.bytes; }
};

/// The bytes that headerBytes() needs to see.
inline constexpr std::size_t fixedHeaderBytes = 12;

/// How many bytes the header of a block takes.
///
/// \param start       the first bytes of the block, fixedHeaderBytes of them or, if it is shorter, all
/// \param blockBytes  the bytes of the whole block
/// \return  bytes of the header, at most `blockBytes`
/// \errors  EncodingError where fields of `start` contradict each other, the shape or `blockBytes`
/// \threads safe
std::uint64_t headerBytes(std::span<const std::byte> start, std::uint64_t blockBytes,
                          const BlockShape& shape);

/// Reads and checks the header of a block. Allocates no more than twice what the header takes.
///
/// \param start       the first bytes of the block: at least its header
/// \param blockBytes  the bytes of the whole block
/// \errors  EncodingError names the field, what was expected and what was found
/// \threads safe
PieceHeader parseHeader(std::span<const std::byte> start, std::uint64_t blockBytes, const BlockShape& shape);

} // namespace container::codec
