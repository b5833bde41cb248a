// SPDX-License-Identifier: BSD-3-Clause
// Blocks that are encoded and decoded: every type, length, filter and codec, whole and in ranges.
#include "container/codec/encoding_error.h"
#include "container/codec/piece_decoder.h"
#include "tests/container/codec/blocks.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>

namespace {

using blocks::Bytes;
using blocks::recordBytes;
using container::NumberKind;
using container::codec::BlockShape;
using container::codec::Codec;
using container::codec::EncodingError;
using container::codec::EncodingOptions;
using container::codec::Filter;
using container::codec::parseHeader;
using container::codec::PieceDecoder;
using container::codec::PieceHeader;
using container::codec::Scaling;

/// An encoded block and its decoder.
class EncodedBlock {
 public:
  EncodedBlock(const Bytes& records, const BlockShape& shape, const EncodingOptions& options)
      : block(blocks::encoded(records, shape, options)), header(parseHeader(block, block.size(), shape)) {}

  std::span<const std::byte> stored(std::uint32_t piece) const {
    return {block.data() + header.pieces[piece].position, header.pieces[piece].bytes};
  }

  // Decodes into a block of exactly that size, so that a sanitizer or valgrind reports a write behind it.
  Bytes range(std::uint64_t first, std::uint64_t count) {
    const std::size_t bytes = count * header.recordBytes();
    const auto records = std::make_unique<std::byte[]>(bytes);
    asked.clear();
    decoder.decodeRange(
        header, first, count,
        [this](std::uint32_t piece) {
          asked.push_back(piece);
          return stored(piece);
        },
        records.get());
    return {records.get(), records.get() + bytes};
  }

  // All records, each piece decoded into the memory of its stored bytes.
  Bytes inPlace() {
    Bytes all;
    for (std::uint32_t piece = 0; piece < header.pieces.size(); ++piece) {
      const std::size_t bytes = header.records(piece) * header.recordBytes();
      const std::span<const std::byte> from = stored(piece);
      Bytes memory(std::max(bytes, from.size()));
      std::copy(from.begin(), from.end(), memory.begin());
      decoder.decode(header, piece, {memory.data(), from.size()}, memory.data());
      all.insert(all.end(), memory.begin(), memory.begin() + static_cast<std::ptrdiff_t>(bytes));
    }
    return all;
  }

  std::string refusal(std::uint32_t piece, std::span<const std::byte> bytes) {
    try {
      Bytes records(header.records(piece) * header.recordBytes());
      decoder.decode(header, piece, bytes, records.data());
      return "none";
    } catch (const EncodingError& error) {
      return error.what();
    }
  }

  Bytes block;
  PieceHeader header;
  std::vector<std::uint32_t> asked;

 private:
  PieceDecoder decoder;
};

Bytes part(const Bytes& records, std::size_t recordSize, std::size_t first, std::size_t count) {
  const auto begin = records.begin() + static_cast<std::ptrdiff_t>(first * recordSize);
  return {begin, begin + static_cast<std::ptrdiff_t>(count * recordSize)};
}

void expectEveryEncoding(const BlockShape& shape, const Bytes& records) {
  for (const Filter filter : blocks::everyFilter) {
    for (const Codec codec : blocks::everyCodec) {
      EncodedBlock block(records, shape, {filter, codec, 1, {}, 100});
      EXPECT_TRUE(block.range(0, shape.records) == records)
          << blocks::nameOf(shape.format) << " x " << shape.length << ", " << shape.records
          << " records, filter " << static_cast<int>(filter) << ", codec " << static_cast<int>(codec);
      EXPECT_TRUE(!block.header.hasIntermediate() || block.inPlace() == records);
    }
  }
}

TEST(Pieces, GiveBackEveryTypeLengthAndCount) {
  for (const container::ValueFormat& format : blocks::everyFormat) {
    for (const std::uint64_t length : {1U, 3U, 4U, 70U}) {
      for (const std::uint64_t count : {0U, 1U, 99U, 100U, 101U, 350U}) {
        const BlockShape shape{format, length, count};
        const std::size_t bytes = count * recordBytes(shape);
        expectEveryEncoding(shape, count == 350 ? blocks::smoothBytes(bytes) : blocks::randomBytes(bytes));
      }
    }
  }
}

template <class Real>
void expectScaled(std::size_t length, std::uint64_t count) {
  const BlockShape shape{{NumberKind::real, sizeof(Real)}, length, count};
  const std::vector<Scaling> scaling(length, {0.01, 500});
  const Bytes records = blocks::bytesOf(blocks::gridValues<Real>(scaling, count, 50000));
  for (const Filter filter : blocks::everyFilter) {
    for (const Codec codec : blocks::everyCodec) {
      EncodedBlock block(records, shape, {filter, codec, 1, scaling, 1500});
      EXPECT_TRUE(block.header.isScaled());
      EXPECT_TRUE(block.range(0, count) == records) << length << " values, " << count << " records";
      EXPECT_EQ(block.header.hasIntermediate(), codec != Codec::none);
      EXPECT_TRUE(codec == Codec::none || block.inPlace() == records);
    }
  }
}

TEST(Pieces, GiveBackScaledValues) {
  for (const std::size_t length : {1U, 2U, 3U, 5U, 3000U}) {
    for (const std::uint64_t count : {0U, 1U, 31U}) {
      expectScaled<double>(length, count);
      expectScaled<float>(length, count);
    }
  }
  expectScaled<double>(3, 4000);
  expectScaled<float>(1, 6001);
}

TEST(Pieces, TakeAQuarterOfAMebibyteEachByDefault) {
  const BlockShape points{{NumberKind::real, 8}, 3, 30000};
  EncodedBlock block(Bytes(points.records * 24), points, {});
  EXPECT_EQ(block.header.recordsPerPiece, 10922U);
  EXPECT_EQ(block.header.pieces.size(), 3U);
  const BlockShape wide{{NumberKind::real, 8}, 100000, 2};
  EncodedBlock wideBlock(Bytes(wide.records * 800000), wide, {});
  EXPECT_EQ(wideBlock.header.recordsPerPiece, 1U);
}

struct Range {
  std::uint64_t first;
  std::uint64_t count;
  std::vector<std::uint32_t> pieces;
};

TEST(Pieces, OfARangeAreTheOnlyOnesAskedFor) {
  const BlockShape shape{{NumberKind::signedInteger, 4}, 2, 1050};
  const Bytes records = blocks::randomBytes(1050 * 8);
  EncodedBlock block(records, shape, {Filter::deltaAndShuffle, Codec::zlib, 6, {}, 100});
  for (const Range& range : {
           Range{0, 0, {}},
           Range{1050, 0, {}},
           Range{0, 1, {0}},
           Range{99, 1, {0}},
           Range{100, 100, {1}},
           Range{150, 100, {1, 2}},
           Range{299, 202, {2, 3, 4, 5}},
           Range{1000, 50, {10}},
           Range{1049, 1, {10}},
           Range{900, 150, {9, 10}},
       }) {
    SCOPED_TRACE(std::to_string(range.first) + " + " + std::to_string(range.count));
    EXPECT_TRUE(block.range(range.first, range.count) == part(records, 8, range.first, range.count));
    EXPECT_EQ(block.asked, range.pieces);
  }
}

TEST(Pieces, OfRecordsBehindTheBlockAreRefused) {
  const BlockShape shape{{NumberKind::signedInteger, 4}, 1, 10};
  EncodedBlock block(Bytes(40), shape, {});
  EXPECT_THROW(block.range(0, 11), std::out_of_range);
  EXPECT_THROW(block.range(11, 0), std::out_of_range);
  EXPECT_THROW(block.range(5, 6), std::out_of_range);
}

TEST(Pieces, WithAnyBitChangedAreRefused) {
  const BlockShape shape{{NumberKind::real, 8}, 1, 20};
  for (const Codec codec : blocks::everyCodec) {
    EncodedBlock block(blocks::smoothBytes(160), shape, {Filter::shuffle, codec, 3, {}, 20});
    Bytes stored(block.stored(0).begin(), block.stored(0).end());
    for (std::size_t bit = 0; bit < stored.size() * 8; ++bit) {
      stored[bit / 8] ^= static_cast<std::byte>(1U << bit % 8);
      EXPECT_NE(block.refusal(0, stored).find("piece 0: expected checksum "), std::string::npos) << bit;
      stored[bit / 8] ^= static_cast<std::byte>(1U << bit % 8);
    }
  }
}

TEST(Pieces, OfAnotherSizeAreRefused) {
  const BlockShape shape{{NumberKind::unsignedInteger, 1}, 1, 8};
  EncodedBlock block(blocks::randomBytes(8), shape, {Filter::none, Codec::none, 0, {}, 4});
  EXPECT_EQ(block.refusal(1, block.stored(1).first(3)), "piece 1: expected 4 bytes, found 3");
}

/// The refusal of a forged piece with a matching checksum.
std::string refusalOfGarbage(Codec codec) {
  const BlockShape shape{{NumberKind::unsignedInteger, 1}, 1, 400};
  EncodedBlock block(blocks::smoothBytes(400), shape, {Filter::shuffle, codec, 9, {}, 400});
  const Bytes garbage(block.stored(0).size(), std::byte{0xff});
  block.header.pieces[0].checksum = 0;
  const std::string text = block.refusal(0, garbage);
  const std::string_view found = "found ";
  block.header.pieces[0].checksum =
      static_cast<std::uint32_t>(std::stoul(text.substr(text.find(found) + found.size())));
  return block.refusal(0, garbage);
}

TEST(Pieces, ThatTheCodecCannotReadAreRefused) {
  EXPECT_EQ(refusalOfGarbage(Codec::zlib),
            "piece 0: expected a zlib stream of 400 bytes, found one that is damaged or has another size");
  EXPECT_EQ(refusalOfGarbage(Codec::lz4),
            "piece 0: expected an LZ4 block of 400 bytes, found one that is damaged or has another size");
}

struct Refused {
  BlockShape shape;
  EncodingOptions options;
  const char* text;
};

TEST(Pieces, AreNotMadeFromOptionsThatDoNotFit) {
  const BlockShape real{{NumberKind::real, 8}, 1, 1};
  const BlockShape integer{{NumberKind::signedInteger, 8}, 1, 1};
  const Bytes third = blocks::bytesOf<double>({1.0 / 3});
  for (const Refused& row : {
           Refused{
               integer, {.scaling = {{0.1, 0}}}, "scaling: expected values of a real type, found integers"},
           Refused{real, {.scaling = {{0.1, 0}, {0.1, 0}}}, "scaling: expected 1 components, found 2"},
           Refused{real, {.scaling = {{0, 0}}}, "scaling: expected finite numbers and no scale of 0"},
           Refused{real,
                   {.scaling = {{0.1, 0}}},
                   "scaling: expected one that gives every value back bit for bit, found one that does not"},
           Refused{real, {.level = 77}, "zlib: expected a level from 1 to 12, found 77"},
       }) {
    try {
      blocks::encoded(third, row.shape, row.options);
      ADD_FAILURE() << "no exception instead of: " << row.text;
    } catch (const std::invalid_argument& error) {
      EXPECT_STREQ(error.what(), row.text);
    }
  }
}

} // namespace
