// SPDX-License-Identifier: BSD-3-Clause
// The encoding that is chosen for values of a known structure.
#include "container/codec/encoding_choice.h"

#include "tests/container/codec/blocks.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

using blocks::Bytes;
using container::NumberKind;
using container::codec::BlockShape;
using container::codec::chooseEncoding;
using container::codec::Codec;
using container::codec::EncodingOptions;
using container::codec::EncodingWish;
using container::codec::Filter;
using container::codec::Scaling;

std::optional<EncodingOptions> chosen(const Bytes& records, const BlockShape& shape, Codec codec,
                                      std::span<const Scaling> hint = {}) {
  return chooseEncoding(records.data(), shape, {codec, 6, hint});
}

// A path: neighbouring values differ little, distant ones differ much.
std::vector<double> path(std::size_t count, double unit) {
  std::mt19937 random(4);
  std::vector<double> values;
  double integer = 500000;
  for (std::size_t i = 0; i < count; ++i) {
    integer += static_cast<double>(100 + random() % 50);
    values.push_back(integer * unit);
  }
  return values;
}

TEST(EncodingChoice, StoresRandomBytesAsTheyAre) {
  const BlockShape shape{{NumberKind::unsignedInteger, 8}, 1, 20000};
  for (const Codec codec : blocks::everyCodec) {
    EXPECT_FALSE(chosen(blocks::randomBytes(160000), shape, codec));
  }
}

TEST(EncodingChoice, StoresFewRecordsAsTheyAre) {
  const BlockShape one{{NumberKind::real, 8}, 1, 1};
  EXPECT_FALSE(chosen(blocks::bytesOf<double>({7}), one, Codec::zlib));
  const BlockShape none{{NumberKind::real, 8}, 1, 0};
  EXPECT_FALSE(chosen({}, none, Codec::lz4));
}

TEST(EncodingChoice, TakesDifferencesOfIntegersForAPathOnAGrid) {
  const BlockShape shape{{NumberKind::real, 8}, 1, 100000};
  for (const Codec codec : {Codec::zlib, Codec::lz4}) {
    const auto options = chosen(blocks::bytesOf(path(100000, 0.001)), shape, codec);
    ASSERT_TRUE(options);
    EXPECT_EQ(options->filter, Filter::deltaAndShuffle);
    EXPECT_EQ(options->codec, codec);
    EXPECT_EQ(options->scaling, (std::vector<Scaling>{{0.001, 0}}));
    EXPECT_EQ(options->recordsPerPiece, 0U);
  }
}

TEST(EncodingChoice, TakesScaledIntegersAloneWithoutCodec) {
  const BlockShape shape{{NumberKind::real, 8}, 1, 100000};
  const Bytes records = blocks::bytesOf(path(100000, 0.001));
  const auto options = chosen(records, shape, Codec::none);
  ASSERT_TRUE(options);
  EXPECT_FALSE(options->scaling.empty());
  EXPECT_LT(blocks::encoded(records, shape, *options).size(), records.size() * 51 / 100);
}

TEST(EncodingChoice, TakesTheHintOfTheSource) {
  const BlockShape shape{{NumberKind::real, 8}, 1, 50000};
  const std::vector<Scaling> hint{{0.00025, 0}};
  const auto options = chosen(blocks::bytesOf(path(50000, 0.00025)), shape, Codec::zlib, hint);
  ASSERT_TRUE(options);
  EXPECT_EQ(options->scaling, hint);
}

TEST(EncodingChoice, EncodesRealsWithoutGridToo) {
  std::vector<double> values = path(50000, 1);
  for (double& value : values) {
    value = std::sqrt(value);
  }
  const BlockShape shape{{NumberKind::real, 8}, 1, 50000};
  const auto options = chosen(blocks::bytesOf(values), shape, Codec::zlib);
  ASSERT_TRUE(options);
  EXPECT_TRUE(options->scaling.empty());
  EXPECT_NE(options->filter, Filter::none);
}

// On a sample: the choice must be as good for the whole block, within a few per cent.
TEST(EncodingChoice, IsTheBestOfAllFilters) {
  const BlockShape shape{{NumberKind::unsignedInteger, 2}, 1, 300000};
  std::vector<std::uint16_t> values;
  std::mt19937 random(8);
  for (std::size_t i = 0; i < shape.records; ++i) {
    values.push_back(static_cast<std::uint16_t>(i / 3 + random() % 3));
  }
  const Bytes records = blocks::bytesOf(values);
  const auto options = chosen(records, shape, Codec::zlib);
  ASSERT_TRUE(options);
  const std::size_t size = blocks::encoded(records, shape, *options).size();
  for (const Filter filter : blocks::everyFilter) {
    EXPECT_LE(size * 96 / 100, blocks::encoded(records, shape, {filter, Codec::zlib, 6, {}, 0}).size());
  }
}

// Noise in the low byte, little in the high one: differences would save a thousandth.
TEST(EncodingChoice, TakesTheSimplerFilterWhereTheDifferenceIsSmall) {
  const BlockShape shape{{NumberKind::unsignedInteger, 2}, 1, 100000};
  std::vector<std::uint16_t> values;
  std::mt19937 random(8);
  for (std::size_t i = 0; i < shape.records; ++i) {
    values.push_back(static_cast<std::uint16_t>(i / 1000 * 256 + random() % 256));
  }
  const auto options = chosen(blocks::bytesOf(values), shape, Codec::zlib);
  ASSERT_TRUE(options);
  EXPECT_EQ(options->filter, Filter::shuffle);
}

} // namespace
