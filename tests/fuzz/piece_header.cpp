// SPDX-License-Identifier: BSD-3-Clause
// Two bytes of type, four of length and four of records, then an encoded block: it is refused, or its pieces lie in it.
#include "container/codec/encoding_error.h"
#include "container/codec/piece_decoder.h"
#include "tests/fuzz/fuzz_target.h"

#include <cstring>
#include <vector>

namespace {

using container::NumberKind;
using container::codec::BlockShape;
using container::codec::EncodingError;
using container::codec::PieceHeader;

constexpr std::size_t shapeBytes = 10;
constexpr std::uint64_t mostDecoded = 1U << 20;

BlockShape shapeFrom(const std::uint8_t* bytes) {
  std::uint32_t length = 0;
  std::uint32_t records = 0;
  std::memcpy(&length, bytes + 2, 4);
  std::memcpy(&records, bytes + 6, 4);
  const auto kind = static_cast<NumberKind>(bytes[0] % 3);
  const std::size_t width = std::size_t{1} << bytes[1] % 4;
  return {{kind, kind == NumberKind::real && width < 4 ? 4 : width}, length, records};
}

void decodeAll(const PieceHeader& header, std::span<const std::byte> block) {
  container::codec::PieceDecoder decoder;
  for (std::uint32_t p = 0; p < header.pieces.size(); ++p) {
    const auto stored = block.subspan(header.pieces[p].position, header.pieces[p].bytes);
    if (header.records(p) * header.recordBytes() > mostDecoded) {
      continue;
    }
    std::vector<std::byte> records(header.records(p) * header.recordBytes());
    try {
      decoder.decode(header, p, stored, records.data());
    } catch (const EncodingError&) {
    }
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  if (count < shapeBytes) {
    return 0;
  }
  const BlockShape shape = shapeFrom(bytes);
  const std::span block(reinterpret_cast<const std::byte*>(bytes) + shapeBytes, count - shapeBytes);
  try {
    const PieceHeader header = parseHeader(block, block.size(), shape);
    std::uint64_t end = headerBytes(block, block.size(), shape);
    std::uint64_t records = 0;
    for (std::uint32_t p = 0; p < header.pieces.size(); ++p) {
      fuzz::require(header.pieces[p].position == end, "pieces lie side by side");
      end += header.pieces[p].bytes;
      records += header.records(p);
    }
    fuzz::require(end == block.size() && records == shape.records, "header and pieces are the whole block");
    decodeAll(header, block);
  } catch (const EncodingError&) {
  }
  return 0;
}
