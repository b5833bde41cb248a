// SPDX-License-Identifier: BSD-3-Clause
// Checks every field of a header, and every size against what the codec can give, before it allocates.
#include "container/codec/pieces.h"

#include "container/codec/encoding_error.h"
#include "container/format/part_checksum.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace container::codec {
namespace {

constexpr std::uint64_t scalingBytes = 16;
constexpr std::uint64_t tableRowBytes = 8;

/// The fields in front, which are there in every block.
struct FixedFields {
  std::uint32_t count = 0;
  std::uint32_t recordsPerPiece = 0;
  std::uint8_t filter = 0;
  std::uint8_t codec = 0;
  std::uint8_t scaled = 0;
  std::uint8_t padding = 0;
};
static_assert(sizeof(FixedFields) == fixedHeaderBytes);

template <class T>
T valueAt(std::span<const std::byte> bytes, std::uint64_t position) {
  T value;
  std::memcpy(&value, bytes.data() + position, sizeof value);
  return value;
}

[[noreturn]] void refuse(const std::string& expected, const std::string& found) {
  throw EncodingError("header of pieces", expected, found);
}

std::string pieceName(std::uint64_t piece) {
  return "piece " + std::to_string(piece);
}

void requireCount(const FixedFields& fields, const BlockShape& shape) {
  if (fields.recordsPerPiece == 0) {
    refuse("at least 1 record per piece", "0");
  }
  const std::uint64_t rest = shape.records % fields.recordsPerPiece != 0 ? 1 : 0;
  const std::uint64_t count = shape.records / fields.recordsPerPiece + rest;
  if (fields.count != count) {
    refuse(std::to_string(count) + " pieces of " + std::to_string(fields.recordsPerPiece) + " records for " +
               std::to_string(shape.records) + " records",
           std::to_string(fields.count));
  }
}

void requireKinds(const FixedFields& fields, const BlockShape& shape) {
  if (fields.filter > static_cast<std::uint8_t>(Filter::deltaAndShuffle)) {
    refuse("filter 0, 1 or 2", std::to_string(fields.filter));
  }
  if (fields.codec > static_cast<std::uint8_t>(Codec::lz4)) {
    refuse("codec 0, 1 or 2", std::to_string(fields.codec));
  }
  if (fields.scaled > 1) {
    refuse("0 or 1 for scaled", std::to_string(fields.scaled));
  }
  if (fields.scaled == 1 && shape.format.kind != NumberKind::real) {
    refuse("values that are not scaled, as their type is an integer", "scaled values");
  }
  if (fields.padding != 0) {
    refuse("0 in byte 11", std::to_string(fields.padding));
  }
}

FixedFields fixedFields(std::span<const std::byte> start, std::uint64_t blockBytes, const BlockShape& shape) {
  if (start.size() < fixedHeaderBytes || blockBytes < fixedHeaderBytes) {
    refuse("at least 12 bytes", std::to_string(std::min<std::uint64_t>(start.size(), blockBytes)));
  }
  const auto fields = valueAt<FixedFields>(start, 0);
  if (shape.length == 0) {
    refuse("at least 1 value per record", "0");
  }
  requireCount(fields, shape);
  requireKinds(fields, shape);
  return fields;
}

std::uint64_t headerBytes(const FixedFields& fields, std::uint64_t blockBytes, const BlockShape& shape) {
  if (fields.scaled == 1 && shape.length > blockBytes / scalingBytes) {
    refuse("scale and offset of " + std::to_string(shape.length) + " components",
           std::to_string(blockBytes) + " bytes");
  }
  const std::uint64_t bytes = fixedHeaderBytes + (fields.scaled == 1 ? shape.length * scalingBytes : 0) +
                              fields.count * tableRowBytes;
  if (bytes > blockBytes) {
    refuse(std::to_string(bytes) + " bytes of header", "a block of " + std::to_string(blockBytes) + " bytes");
  }
  return bytes;
}

std::vector<Scaling> readScaling(std::span<const std::byte> start, std::uint64_t length) {
  std::vector<Scaling> scaling;
  scaling.reserve(length);
  for (std::uint64_t c = 0; c < length; ++c) {
    const std::uint64_t position = fixedHeaderBytes + c * scalingBytes;
    const Scaling component{valueAt<double>(start, position), valueAt<double>(start, position + 8)};
    if (!isUsable(component)) {
      refuse("a finite scale other than 0 and a finite offset for component " + std::to_string(c),
             "scale " + std::to_string(component.scale) + " and offset " + std::to_string(component.offset));
    }
    scaling.push_back(component);
  }
  return scaling;
}

// Divides instead of multiplying: no product of a hostile length and a hostile count can overflow.
void requireSize(const PieceHeader& header, std::uint64_t piece, std::uint32_t stored) {
  const std::uint64_t records = header.records(piece);
  const std::uint64_t valueBytes = header.isScaled() ? sizeof(std::int32_t) : header.shape.format.bytes;
  const std::uint64_t most = std::min(mostDecodedBytes(header.codec, stored), mostPieceBytes(header.codec));
  const std::string found = std::to_string(stored) + " stored bytes";
  if (header.shape.length > most / valueBytes / records) {
    throw EncodingError(pieceName(piece),
                        "stored bytes that can hold " + std::to_string(records) + " records of " +
                            std::to_string(header.shape.length) + " values",
                        found);
  }
  const std::uint64_t plain = records * header.shape.length * valueBytes;
  if (header.codec == Codec::none && stored != plain) {
    throw EncodingError(pieceName(piece), std::to_string(plain) + " stored bytes", found);
  }
}

void readTable(std::span<const std::byte> start, std::uint64_t tablePosition, std::uint32_t count,
               std::uint64_t blockBytes, PieceHeader& header) {
  header.pieces.reserve(count);
  std::uint64_t position = tablePosition + count * tableRowBytes;
  for (std::uint64_t p = 0; p < count; ++p) {
    const std::uint64_t row = tablePosition + p * tableRowBytes;
    const StoredPiece piece{position, valueAt<std::uint32_t>(start, row),
                            valueAt<std::uint32_t>(start, row + 4)};
    requireSize(header, p, piece.bytes);
    position += piece.bytes;
    header.checksum = joinedChecksum(header.checksum, piece.checksum, piece.bytes);
    header.pieces.push_back(piece);
  }
  if (position != blockBytes) {
    refuse("a header and pieces of " + std::to_string(position) + " bytes together",
           "a block of " + std::to_string(blockBytes) + " bytes");
  }
}

} // namespace

std::uint64_t PieceHeader::records(std::uint64_t piece) const {
  return std::min<std::uint64_t>(recordsPerPiece, shape.records - firstRecord(piece));
}

RecordShape PieceHeader::filteredShape(std::uint64_t piece) const {
  return {.valueBytes = isScaled() ? sizeof(std::int32_t) : shape.format.bytes,
          .length = static_cast<std::size_t>(shape.length),
          .count = static_cast<std::size_t>(records(piece))};
}

std::uint64_t headerBytes(std::span<const std::byte> start, std::uint64_t blockBytes,
                          const BlockShape& shape) {
  return headerBytes(fixedFields(start, blockBytes, shape), blockBytes, shape);
}

PieceHeader parseHeader(std::span<const std::byte> start, std::uint64_t blockBytes, const BlockShape& shape) {
  const FixedFields fields = fixedFields(start, blockBytes, shape);
  const std::uint64_t bytes = headerBytes(fields, blockBytes, shape);
  if (bytes > start.size()) {
    refuse(std::to_string(bytes) + " bytes", std::to_string(start.size()));
  }
  PieceHeader header;
  header.shape = shape;
  header.recordsPerPiece = fields.recordsPerPiece;
  header.filter = static_cast<Filter>(fields.filter);
  header.codec = static_cast<Codec>(fields.codec);
  if (fields.scaled == 1) {
    header.scaling = readScaling(start, shape.length);
  }
  header.checksum = continuedChecksum(0, start.data(), bytes);
  readTable(start, bytes - fields.count * tableRowBytes, fields.count, blockBytes, header);
  return header;
}

} // namespace container::codec
