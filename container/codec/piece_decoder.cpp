// SPDX-License-Identifier: BSD-3-Clause
// Decompresses a piece, removes its filter and gives scaled integers their values.
#include "container/codec/piece_decoder.h"

#include "container/codec/encoding_error.h"
#include "container/format/part_checksum.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>

namespace container::codec {
namespace {

// Integers that are restored at a time: they stay in the first-level cache until they have their values.
constexpr std::size_t chunkValues = 2048;

std::string nameOf(std::uint32_t piece) {
  return "piece " + std::to_string(piece);
}

void requireStored(const PieceHeader& header, std::uint32_t piece, std::span<const std::byte> stored) {
  const StoredPiece& expected = header.pieces.at(piece);
  if (stored.size() != expected.bytes) {
    throw EncodingError(nameOf(piece), std::to_string(expected.bytes) + " bytes",
                        std::to_string(stored.size()));
  }
  const std::uint32_t found = continuedChecksum(0, stored.data(), stored.size());
  if (found != expected.checksum) {
    throw EncodingError(nameOf(piece), "checksum " + std::to_string(expected.checksum),
                        std::to_string(found));
  }
}

} // namespace

std::byte* ScratchBytes::of(std::size_t count) {
  if (count > capacity) {
    bytes.reset();
    capacity = 0;
    bytes = std::make_unique_for_overwrite<std::byte[]>(count);
    capacity = count;
  }
  return bytes.get();
}

void PieceDecoder::decode(const PieceHeader& header, std::uint32_t piece, std::span<const std::byte> stored,
                          std::byte* records) {
  requireStored(header, piece, stored);
  const RecordShape shape = header.filteredShape(piece);
  const bool isFinal = header.filter == Filter::none && !header.isScaled();
  const std::byte* filtered = stored.data();
  if (header.hasIntermediate() || isFinal) {
    std::byte* plain = isFinal ? records : filteredPiece.of(shape.bytes());
    if (!decompressor.decompress(header.codec, stored, plain, shape.bytes())) {
      throw EncodingError(nameOf(piece),
                          std::string(header.codec == Codec::zlib ? "a zlib stream" : "an LZ4 block") +
                              " of " + std::to_string(shape.bytes()) + " bytes",
                          "one that is damaged or has another size");
    }
    filtered = plain;
  }
  if (header.isScaled()) {
    restoreScaled(header, shape, filtered, records);
  } else if (!isFinal) {
    removeFilter(header.filter, shape, filtered, records);
  }
}

// A record in front of each chunk is the last of the chunk before: differences go on from there.
void PieceDecoder::restoreScaled(const PieceHeader& header, const RecordShape& shape,
                                 const std::byte* filtered, std::byte* records) {
  const ScaledValues values(header.scaling, header.shape.format);
  const std::size_t integerBytes = shape.length * shape.valueBytes;
  const std::size_t chunk = std::min(std::max<std::size_t>(chunkValues / shape.length, 1), shape.count);
  std::byte* before = integers.of((chunk + 1) * integerBytes);
  std::byte* current = before + integerBytes;
  for (std::size_t first = 0; first < shape.count; first += chunk) {
    const std::size_t count = std::min(chunk, shape.count - first);
    removeFilter(header.filter, shape, filtered, first, count, current);
    values.restore(current, count, records + first * header.recordBytes());
    std::memcpy(before, current + (count - 1) * integerBytes, integerBytes);
  }
}

void PieceDecoder::decodeRange(const PieceHeader& header, std::uint64_t first, std::uint64_t count,
                               const Source& source, std::byte* records) {
  if (first > header.shape.records || count > header.shape.records - first) {
    throw std::out_of_range("records of a block: expected at most " + std::to_string(header.shape.records) +
                            ", found " + std::to_string(count) + " from record " + std::to_string(first) +
                            " on");
  }
  const std::size_t recordBytes = header.recordBytes();
  const std::uint64_t end = first + count;
  while (first < end) {
    const auto piece = static_cast<std::uint32_t>(first / header.recordsPerPiece);
    const std::uint64_t pieceFirst = header.firstRecord(piece);
    const std::uint64_t pieceRecords = header.records(piece);
    const std::uint64_t wanted = std::min(end, pieceFirst + pieceRecords) - first;
    if (wanted == pieceRecords) {
      decode(header, piece, source(piece), records);
    } else {
      std::byte* whole = partialPiece.of(pieceRecords * recordBytes);
      decode(header, piece, source(piece), whole);
      std::memcpy(records, whole + (first - pieceFirst) * recordBytes, wanted * recordBytes);
    }
    first += wanted;
    records += wanted * recordBytes;
  }
}

} // namespace container::codec
