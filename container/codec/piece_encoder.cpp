// SPDX-License-Identifier: BSD-3-Clause
// Scales, filters and compresses piece by piece, behind a header whose table is filled in on the way.
#include "container/codec/piece_encoder.h"

#include "container/format/part_checksum.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>

namespace container::codec {
namespace {

constexpr std::size_t tableRowBytes = 8;

template <class T>
void put(T value, std::size_t position, std::vector<std::byte>& block) {
  std::memcpy(block.data() + position, &value, sizeof value);
}

void requireScaling(const EncodingOptions& options, const BlockShape& shape) {
  if (options.scaling.empty()) {
    return;
  }
  if (shape.format.kind != NumberKind::real) {
    throw std::invalid_argument("scaling: expected values of a real type, found integers");
  }
  if (options.scaling.size() != shape.length) {
    throw std::invalid_argument("scaling: expected " + std::to_string(shape.length) + " components, found " +
                                std::to_string(options.scaling.size()));
  }
  if (!std::all_of(options.scaling.begin(), options.scaling.end(), isUsable)) {
    throw std::invalid_argument("scaling: expected finite numbers and no scale of 0");
  }
}

std::uint32_t recordsPerPiece(const EncodingOptions& options, const BlockShape& shape) {
  if (options.recordsPerPiece != 0) {
    return options.recordsPerPiece;
  }
  const std::uint64_t recordBytes = shape.length * shape.format.bytes;
  return static_cast<std::uint32_t>(std::max<std::uint64_t>(usualPieceBytes / recordBytes, 1));
}

std::uint64_t pieceCount(const BlockShape& shape, std::uint64_t perPiece) {
  return shape.records / perPiece + (shape.records % perPiece != 0 ? 1 : 0);
}

/// Makes pieces of one block, with buffers that all of them share.
class PieceEncoder {
 public:
  PieceEncoder(const BlockShape& blockShape, const EncodingOptions& encodingOptions)
      : shape(blockShape), options(encodingOptions), compressor(options.codec, options.level) {}

  // Appends the piece of `count` records and returns its bytes.
  std::size_t append(const std::byte* records, std::size_t count, std::vector<std::byte>& block) {
    RecordShape pieceShape{shape.format.bytes, static_cast<std::size_t>(shape.length), count};
    if (!options.scaling.empty()) {
      integers.resize(pieceShape.values());
      if (!findIntegers(options.scaling, shape.format, records, count, integers.data())) {
        throw std::invalid_argument(
            "scaling: expected one that gives every value back bit for bit, found one that "
            "does not");
      }
      records = reinterpret_cast<const std::byte*>(integers.data());
      pieceShape.valueBytes = sizeof(std::int32_t);
    }
    if (options.filter == Filter::none) {
      return compressor.append({records, pieceShape.bytes()}, block);
    }
    filtered.resize(pieceShape.bytes());
    applyFilter(options.filter, pieceShape, records, filtered.data());
    return compressor.append(filtered, block);
  }

 private:
  const BlockShape& shape;
  const EncodingOptions& options;
  Compressor compressor;
  std::vector<std::int32_t> integers;
  std::vector<std::byte> filtered;
};

// The header up to its table, which has its place but holds zeros.
std::vector<std::byte> emptyHeader(std::uint64_t count, std::uint32_t perPiece,
                                   const EncodingOptions& options) {
  const std::size_t scalingBytes = options.scaling.size() * sizeof(Scaling);
  std::vector<std::byte> block(fixedHeaderBytes + scalingBytes + count * tableRowBytes);
  put(static_cast<std::uint32_t>(count), 0, block);
  put(perPiece, 4, block);
  put(options.filter, 8, block);
  put(options.codec, 9, block);
  put(static_cast<std::uint8_t>(options.scaling.empty() ? 0 : 1), 10, block);
  std::size_t position = fixedHeaderBytes;
  for (const Scaling& component : options.scaling) {
    put(component.scale, position, block);
    put(component.offset, position + sizeof(double), block);
    position += sizeof(Scaling);
  }
  return block;
}

} // namespace

std::vector<std::byte> encodeBlock(const std::byte* records, const BlockShape& shape,
                                   const EncodingOptions& options) {
  requireScaling(options, shape);
  const std::uint32_t perPiece = recordsPerPiece(options, shape);
  const std::uint64_t count = pieceCount(shape, perPiece);
  if (count > std::numeric_limits<std::uint32_t>::max()) {
    throw std::invalid_argument("pieces: expected fewer than 4294967296, found " + std::to_string(count));
  }
  std::vector<std::byte> block = emptyHeader(count, perPiece, options);
  std::size_t row = block.size() - count * tableRowBytes;
  PieceEncoder encoder(shape, options);
  const std::size_t recordBytes = static_cast<std::size_t>(shape.length) * shape.format.bytes;
  for (std::uint64_t first = 0; first < shape.records; first += perPiece, row += tableRowBytes) {
    const std::uint64_t many = std::min<std::uint64_t>(perPiece, shape.records - first);
    const std::size_t before = block.size();
    const std::size_t bytes = encoder.append(records + first * recordBytes, many, block);
    if (bytes > std::numeric_limits<std::uint32_t>::max()) {
      throw std::invalid_argument("piece: expected at most 4294967295 stored bytes, found " +
                                  std::to_string(bytes));
    }
    put(static_cast<std::uint32_t>(bytes), row, block);
    put(continuedChecksum(0, block.data() + before, bytes), row + 4, block);
  }
  return block;
}

} // namespace container::codec
