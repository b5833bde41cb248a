// SPDX-License-Identifier: BSD-3-Clause
// Reads the pieces of an encoded block: past SQLite where a checksum confirms the bytes, else through it.
#include "container/read/encoded_block.h"

#include "container/codec/encoding_error.h"
#include "container/read/block_reader.h"

#include <algorithm>
#include <array>
#include <utility>

namespace container {
namespace {

bool take(BlockReader& reader, std::byte* to, std::size_t bytes, std::uint64_t offset, bool straight) {
  if (straight) {
    return reader.readStraight(to, bytes, static_cast<std::size_t>(offset));
  }
  reader.read(to, bytes, static_cast<std::size_t>(offset));
  return true;
}

} // namespace

void EncodedBlock::goTo(BlockReader& reader) {
  if (!reader.isAt(*column, block)) {
    reader.open(*column, *layout, block);
    reader.readPastSqlite();
  }
}

void EncodedBlock::open(BlockReader& reader, const Column& wanted, const BlockLayout& division,
                        std::uint64_t number) {
  if (column == &wanted && block == number && !opened.pieces.empty()) {
    return;
  }
  keptPiece = none;
  opened = {};
  column = &wanted;
  layout = &division;
  block = number;
  goTo(reader);
  const Attribute& attribute = column->attribute;
  const codec::BlockShape shape{valueFormat(attribute.type), attribute.length, layout->rows(block)};
  if (!readHeader(reader, shape, true)) {
    reader.readThroughSqlite();
    readHeader(reader, shape, false);
  }
}

bool EncodedBlock::readHeader(BlockReader& reader, const codec::BlockShape& shape, bool straight) {
  try {
    std::array<std::byte, codec::fixedHeaderBytes> start{};
    const auto fixed = static_cast<std::size_t>(std::min<std::uint64_t>(start.size(), reader.bytes()));
    if (!take(reader, start.data(), fixed, 0, straight)) {
      return false;
    }
    const std::uint64_t bytes = codec::headerBytes({start.data(), fixed}, reader.bytes(), shape);
    std::byte* const whole = storedPiece.of(static_cast<std::size_t>(bytes));
    if (!take(reader, whole, static_cast<std::size_t>(bytes), 0, straight)) {
      return false;
    }
    codec::PieceHeader header =
        codec::parseHeader({whole, static_cast<std::size_t>(bytes)}, reader.bytes(), shape);
    if (straight && header.checksum != reader.checksum()) {
      return false;
    }
    reader.requireChecksum(header.checksum);
    opened = std::move(header);
    return true;
  } catch (const codec::EncodingError& error) {
    if (straight) {
      return false;
    }
    reader.refuse(error.what());
  }
}

bool EncodedBlock::decodeFrom(BlockReader& reader, std::uint32_t piece, std::byte* stored, std::byte* records,
                              bool straight) {
  const codec::StoredPiece& place = opened.pieces[piece];
  if (!take(reader, stored, place.bytes, place.position, straight)) {
    return false;
  }
  try {
    decoder.decode(opened, piece, {stored, place.bytes}, records);
    return true;
  } catch (const codec::EncodingError& error) {
    if (straight) {
      return false;
    }
    reader.refuse(error.what());
  }
}

void EncodedBlock::decode(BlockReader& reader, std::uint32_t piece, std::byte* stored, std::byte* records) {
  goTo(reader);
  if (!decodeFrom(reader, piece, stored, records, true)) {
    reader.readThroughSqlite();
    decodeFrom(reader, piece, stored, records, false);
  }
}

void EncodedBlock::decode(BlockReader& reader, std::uint32_t piece, unsigned char* records) {
  decode(reader, piece, storedPiece.of(opened.pieces[piece].bytes), reinterpret_cast<std::byte*>(records));
}

const unsigned char* EncodedBlock::recordsOf(BlockReader& reader, std::uint32_t piece) {
  if (keptPiece != piece) {
    keptPiece = none;
    const std::size_t storedBytes = opened.pieces[piece].bytes;
    const std::size_t bytes = static_cast<std::size_t>(opened.records(piece)) * opened.recordBytes();
    // The stored bytes are not needed any more once records are written.
    const bool isShared = opened.hasIntermediate();
    kept = decodedPiece.of(isShared ? std::max(bytes, storedBytes) : bytes);
    decode(reader, piece, isShared ? kept : storedPiece.of(storedBytes), kept);
    keptPiece = piece;
  }
  return reinterpret_cast<const unsigned char*>(kept);
}

} // namespace container
