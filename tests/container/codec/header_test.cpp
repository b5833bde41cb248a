// SPDX-License-Identifier: BSD-3-Clause
// The header of pieces: every field forged, every length cut off, and no allocation for impossible sizes.
#include "container/codec/encoding_error.h"
#include "container/codec/pieces.h"
#include "container/format/part_checksum.h"
#include "tests/container/codec/blocks.h"
#include "tests/support/largest_allocation.h"

#include <gtest/gtest.h>
#include <limits>
#include <ostream>

namespace {

using blocks::Bytes;
using container::NumberKind;
using container::codec::BlockShape;
using container::codec::Codec;
using container::codec::EncodingError;
using container::codec::Filter;
using container::codec::parseHeader;
using container::codec::PieceHeader;
using container::codec::Scaling;

constexpr BlockShape tenPoints{{NumberKind::real, 8}, 3, 10};
constexpr BlockShape tenClasses{{NumberKind::unsignedInteger, 1}, 1, 10};
constexpr double infinity = std::numeric_limits<double>::infinity();

/// Ten points in pieces of four records: 12 bytes, 48 of scaling, 24 of table, then 48, 48 and 24 bytes of integers.
Bytes scaledPoints() {
  const std::vector<Scaling> scaling{{0.001, 0}, {0.01, 100}, {0.5, -7}};
  const Bytes records = blocks::bytesOf(blocks::gridValues<double>(scaling, 10));
  return blocks::encoded(records, tenPoints, {Filter::shuffle, Codec::none, 0, scaling, 4});
}

/// Ten bytes in pieces of four: 12 bytes, 24 of table, then the pieces.
Bytes classes(Codec codec) {
  return blocks::encoded(Bytes(10, std::byte{5}), tenClasses, {Filter::none, codec, 9, {}, 4});
}

template <class T>
Bytes with(Bytes block, std::size_t position, T value) {
  std::memcpy(&block[position], &value, sizeof value);
  return block;
}

std::string refusal(const Bytes& block, const BlockShape& shape) {
  try {
    parseHeader(block, block.size(), shape);
    return "none";
  } catch (const EncodingError& error) {
    return error.what();
  }
}

TEST(PieceHeader, HoldsWhatWasEncoded) {
  const Bytes block = scaledPoints();
  const PieceHeader header = parseHeader(block, block.size(), tenPoints);
  EXPECT_EQ(header.recordsPerPiece, 4U);
  EXPECT_EQ(header.filter, Filter::shuffle);
  EXPECT_EQ(header.codec, Codec::none);
  EXPECT_EQ(header.scaling, (std::vector<Scaling>{{0.001, 0}, {0.01, 100}, {0.5, -7}}));
  ASSERT_EQ(header.pieces.size(), 3U);
  EXPECT_EQ(header.pieces[0].position, 84U);
  EXPECT_EQ(header.pieces[2].position, 180U);
  EXPECT_EQ(header.pieces[2].bytes, 24U);
}

TEST(PieceHeader, DividesTheRecords) {
  const Bytes block = scaledPoints();
  const PieceHeader header = parseHeader(block, block.size(), tenPoints);
  EXPECT_EQ(header.firstRecord(2), 8U);
  EXPECT_EQ(header.records(1), 4U);
  EXPECT_EQ(header.records(2), 2U);
  EXPECT_EQ(header.recordBytes(), 24U);
  EXPECT_EQ(header.filteredShape(2).bytes(), 24U);
}

TEST(PieceHeader, JoinsTheChecksumOfTheBlock) {
  for (const Bytes& block : {scaledPoints(), classes(Codec::zlib), classes(Codec::lz4)}) {
    const BlockShape& shape = block == scaledPoints() ? tenPoints : tenClasses;
    const std::uint32_t whole = container::continuedChecksum(0, block.data(), block.size());
    EXPECT_EQ(parseHeader(block, block.size(), shape).checksum, whole);
  }
}

TEST(PieceHeader, NeedsItsOwnBytesOnly) {
  Bytes block = scaledPoints();
  const std::size_t bytes = block.size();
  EXPECT_EQ(headerBytes({block.data(), 12}, bytes, tenPoints), 84U);
  block.resize(84);
  EXPECT_EQ(parseHeader(block, bytes, tenPoints).pieces.size(), 3U);
}

TEST(PieceHeader, OfNoRecordsHasNoPieces) {
  const BlockShape none{{NumberKind::real, 4}, 2, 0};
  const Bytes block = blocks::encoded({}, none, {});
  EXPECT_EQ(block.size(), 12U);
  EXPECT_TRUE(parseHeader(block, block.size(), none).pieces.empty());
}

TEST(PieceHeader, IsRefusedWhereverTheBlockIsCutOff) {
  for (Bytes block : {scaledPoints(), classes(Codec::zlib), classes(Codec::lz4)}) {
    const BlockShape& shape = block == scaledPoints() ? tenPoints : tenClasses;
    while (!block.empty()) {
      block.pop_back();
      EXPECT_NE(refusal(block, shape), "none") << block.size() << " bytes";
    }
  }
}

TEST(PieceHeader, IsRefusedWhereFewerBytesAreSeenThanItHas) {
  const Bytes block = scaledPoints();
  for (std::size_t seen = 0; seen < 84; ++seen) {
    EXPECT_THROW(parseHeader({block.data(), seen}, block.size(), tenPoints), EncodingError) << seen;
  }
}

struct Forged {
  const char* name;
  Bytes block;
  BlockShape shape;
  const char* text;
};

void PrintTo(const Forged& row, std::ostream* out) {
  *out << row.name;
}

std::vector<Forged> forgedFields() {
  const Bytes points = scaledPoints();
  const Bytes raw = classes(Codec::none);
  const Bytes zlib = with(raw, 9, Codec::zlib); // what is in the pieces matters to the decoder only
  const Bytes lz4 = with(raw, 9, Codec::lz4);
  const BlockShape longRecords{{NumberKind::real, 8}, 0xffffffffffffffffU, 10};
  const BlockShape manyRecords{{NumberKind::real, 8}, 3, 0xffffffffffffffffU};
  const BlockShape integers{{NumberKind::signedInteger, 8}, 3, 10};
  return {
      {"Empty", {}, tenClasses, "header of pieces: expected at least 12 bytes, found 0"},
      {"ElevenBytes", Bytes(11), tenClasses, "header of pieces: expected at least 12 bytes, found 11"},
      {"NoValues",
       points,
       {{NumberKind::real, 8}, 0, 10},
       "header of pieces: expected at least 1 value per record, found 0"},
      {"NoRecordsPerPiece", with(raw, 4, 0U), tenClasses,
       "header of pieces: expected at least 1 record per piece, found 0"},
      {"OnePieceMore", with(raw, 0, 4U), tenClasses,
       "header of pieces: expected 3 pieces of 4 records for 10 records, found 4"},
      {"OnePieceLess", with(raw, 0, 2U), tenClasses,
       "header of pieces: expected 3 pieces of 4 records for 10 records, found 2"},
      {"MostPieces", with(raw, 0, 0xffffffffU), tenClasses,
       "header of pieces: expected 3 pieces of 4 records for 10 records, found 4294967295"},
      {"OtherRecordsPerPiece", with(raw, 4, 6U), tenClasses,
       "header of pieces: expected 2 pieces of 6 records for 10 records, found 3"},
      {"Filter", with(raw, 8, std::uint8_t{3}), tenClasses,
       "header of pieces: expected filter 0, 1 or 2, found 3"},
      {"Codec", with(raw, 9, std::uint8_t{255}), tenClasses,
       "header of pieces: expected codec 0, 1 or 2, found 255"},
      {"Scaled", with(points, 10, std::uint8_t{2}), tenPoints,
       "header of pieces: expected 0 or 1 for scaled, found 2"},
      {"ScaledIntegers", points, integers,
       "header of pieces: expected values that are not scaled, as their type is an integer, found scaled "
       "values"},
      {"Padding", with(raw, 11, std::uint8_t{1}), tenClasses,
       "header of pieces: expected 0 in byte 11, found 1"},
      {"ScaleOfZero", with(points, 28, 0.0), tenPoints,
       "header of pieces: expected a finite scale other than 0 and a finite offset for component 1, found "
       "scale "
       "0.000000 and offset 100.000000"},
      {"ScaleOfMinusZero", with(points, 12, -0.0), tenPoints,
       "header of pieces: expected a finite scale other than 0 and a finite offset for component 0, found "
       "scale "
       "-0.000000 and offset 0.000000"},
      {"InfiniteScale", with(points, 44, infinity), tenPoints,
       "header of pieces: expected a finite scale other than 0 and a finite offset for component 2, found "
       "scale "
       "inf and offset -7.000000"},
      {"OffsetThatIsNoNumber", with(points, 52, std::numeric_limits<double>::quiet_NaN()), tenPoints,
       "header of pieces: expected a finite scale other than 0 and a finite offset for component 2, found "
       "scale "
       "0.500000 and offset nan"},
      {"HostileLength", points, longRecords,
       "header of pieces: expected scale and offset of 18446744073709551615 components, found 204 bytes"},
      {"HostileRecords", with(with(points, 0, 0xffffffffU), 4, 0xffffffffU), manyRecords,
       "header of pieces: expected 4294967297 pieces of 4294967295 records for 18446744073709551615 records, "
       "found 4294967295"},
      {"TableBeyondTheBlock", with(with(raw, 0, 10U), 4, 1U), tenClasses,
       "header of pieces: expected 92 bytes of header, found a block of 46 bytes"},
      {"RawPieceTooShort", with(raw, 20, 3U), tenClasses,
       "piece 1: expected stored bytes that can hold 4 records of "
       "1 values, found 3 stored bytes"},
      {"RawPieceTooLong", with(raw, 20, 5U), tenClasses,
       "piece 1: expected 4 stored bytes, found 5 stored bytes"},
      {"PieceOfNoBytes", with(zlib, 12, 0U), tenClasses,
       "piece 0: expected stored bytes that can hold 4 records of "
       "1 values, found 0 stored bytes"},
      {"MoreThanZlibCanGive",
       with(with(with(zlib, 0, 1U), 4, 20000U), 12, 9U),
       {{NumberKind::unsignedInteger, 1}, 1, 9289},
       "piece 0: expected stored bytes that can hold 9289 records of 1 values, found 9 stored bytes"},
      {"MoreThanLz4CanGive",
       with(with(with(lz4, 0, 1U), 4, 20000U), 12, 5U),
       {{NumberKind::unsignedInteger, 2}, 1, 638},
       "piece 0: expected stored bytes that can hold 638 records of 1 values, found 5 stored bytes"},
      {"LongRecordsInFewBytes",
       with(with(zlib, 0, 1U), 4, 4U),
       {{NumberKind::real, 8}, 1U << 31, 1},
       "piece 0: expected stored bytes that can hold 1 records of 2147483648 values, found 4 stored bytes"},
      {"PiecesBeyondTheBlock", with(zlib, 12, 1000U), tenClasses,
       "header of pieces: expected a header and pieces of 1042 bytes together, found a block of 46 bytes"},
      {"LargestPiece", with(zlib, 12, 0xffffffffU), tenClasses,
       "header of pieces: expected a header and pieces of 4294967337 bytes together, found a block of 46 "
       "bytes"},
  };
}

class ForgedField : public testing::TestWithParam<Forged> {};

TEST_P(ForgedField, IsRefusedWithItsText) {
  EXPECT_EQ(refusal(GetParam().block, GetParam().shape), GetParam().text);
}

TEST_P(ForgedField, CostsNoMemory) {
  support::forgetAllocations();
  refusal(GetParam().block, GetParam().shape);
  EXPECT_LT(support::largestAllocation(), 1000U);
}

INSTANTIATE_TEST_SUITE_P(Fields, ForgedField, testing::ValuesIn(forgedFields()),
                         [](const auto& row) { return std::string(row.param.name); });

// The largest size that the codec can give passes; the pieces are checked when they are decoded.
TEST(PieceHeader, TakesSizesUpToWhatTheCodecCanGive) {
  const Bytes zlib = classes(Codec::zlib);
  Bytes one = with(with(zlib, 0, 1U), 4, 20000U);
  one.resize(12 + 8 + 9);
  const BlockShape most{{NumberKind::unsignedInteger, 1}, 1, 9288};
  EXPECT_EQ(refusal(with(one, 12, 9U), most), "none");
}

TEST(PieceHeader, ChangedInAnyBitIsRefusedOrHasAnotherChecksum) {
  const Bytes block = scaledPoints();
  const std::uint32_t checksum = parseHeader(block, block.size(), tenPoints).checksum;
  for (std::size_t bit = 0; bit < 84 * 8; ++bit) {
    const auto changed = static_cast<std::uint8_t>(std::to_integer<unsigned>(block[bit / 8]) ^ 1U << bit % 8);
    const Bytes damaged = with(block, bit / 8, changed);
    if (refusal(damaged, tenPoints) == "none") {
      EXPECT_NE(parseHeader(damaged, damaged.size(), tenPoints).checksum, checksum) << "bit " << bit;
    }
  }
}

} // namespace
