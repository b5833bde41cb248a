// SPDX-License-Identifier: BSD-3-Clause
// Chooses the encoding of a block and applies it.
#include "container/write/prepared_block.h"

#include "container/codec/encoding_choice.h"
#include "container/format/checksum.h"

#include <utility>

namespace container {
namespace {

// zlib 6 is the usual middle. LZ4's slower levels gain little on shuffled bytes and are up to a hundred times slower on
// differences of smooth values.
constexpr int deflateLevel = 6;
constexpr int lz4Level = 1;

std::optional<std::vector<std::byte>> encoded(const std::byte* records, const codec::BlockShape& shape,
                                              std::size_t bytes, BlockEncoding encoding,
                                              std::span<const codec::Scaling> source) {
  const bool isLz4 = encoding == BlockEncoding::lz4;
  const codec::EncodingWish wish{isLz4 ? codec::Codec::lz4 : codec::Codec::zlib,
                                 isLz4 ? lz4Level : deflateLevel, source};
  const auto options = codec::chooseEncoding(records, shape, wish);
  if (!options) {
    return std::nullopt;
  }
  std::vector<std::byte> result = codec::encodeBlock(records, shape, *options);
  return result.size() < bytes ? std::optional(std::move(result)) : std::nullopt;
}

} // namespace

PreparedBlock prepareBlock(std::span<const unsigned char> records, const Attribute& attribute,
                           BlockEncoding encoding, std::span<const codec::Scaling> source) {
  const auto* const bytes = reinterpret_cast<const std::byte*>(records.data());
  const codec::BlockShape shape{valueFormat(attribute.type), attribute.length,
                                records.size() / attribute.recordBytes()};
  PreparedBlock block;
  block.extents =
      extentsOf({bytes, shape.format, shape.length, shape.records, attribute.scale, attribute.offset});
  if (encoding != BlockEncoding::raw) {
    block.encoded = encoded(bytes, shape, records.size(), encoding, source);
  }
  block.checksum = block.encoded ? crc32(0, block.encoded->data(), block.encoded->size())
                                 : crc32(0, records.data(), records.size());
  return block;
}

} // namespace container
