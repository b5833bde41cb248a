// SPDX-License-Identifier: BSD-3-Clause
// The codecs: round trips, exact sizes, bounds, and what is refused.
#include "container/codec/compression.h"

#include "tests/container/codec/blocks.h"

#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <stdexcept>

namespace {

using blocks::Bytes;
using container::codec::Codec;
using container::codec::Compressor;
using container::codec::Decompressor;
using container::codec::mostDecodedBytes;
using container::codec::mostPieceBytes;

Bytes compressed(const Bytes& plain, Codec codec, int level) {
  Bytes stored;
  Compressor(codec, level).append(plain, stored);
  return stored;
}

Bytes bytesFrom(std::initializer_list<int> numbers) {
  Bytes bytes;
  for (const int number : numbers) {
    bytes.push_back(static_cast<std::byte>(number));
  }
  return bytes;
}

// Decodes into a block of exactly that size, so that a sanitizer or valgrind reports a write behind it.
bool decompresses(Codec codec, const Bytes& stored, std::size_t bytes, const Bytes& expected) {
  const auto plain = std::make_unique<std::byte[]>(bytes);
  return Decompressor().decompress(codec, stored, plain.get(), bytes) &&
         (bytes == 0 || std::memcmp(plain.get(), expected.data(), bytes) == 0);
}

TEST(Compression, GivesEveryPieceBackAtEveryLevel) {
  for (const std::size_t size : {1U, 2U, 13U, 100U, 65537U, 262144U}) {
    for (const Bytes& plain : {blocks::randomBytes(size), blocks::smoothBytes(size), Bytes(size)}) {
      EXPECT_TRUE(decompresses(Codec::none, compressed(plain, Codec::none, 0), size, plain));
      for (int level = 1; level <= 12; ++level) {
        EXPECT_TRUE(decompresses(Codec::zlib, compressed(plain, Codec::zlib, level), size, plain));
        EXPECT_TRUE(decompresses(Codec::lz4, compressed(plain, Codec::lz4, level), size, plain));
      }
    }
  }
}

TEST(Compression, HigherLevelsOfBothCodecsAreSmaller) {
  const Bytes plain = blocks::smoothBytes(100000);
  EXPECT_LT(compressed(plain, Codec::zlib, 12).size(), compressed(plain, Codec::zlib, 1).size());
  EXPECT_LT(compressed(plain, Codec::lz4, 12).size(), compressed(plain, Codec::lz4, 1).size());
}

TEST(Compression, AppendsBehindWhatIsThere) {
  Compressor compressor(Codec::lz4, 9);
  Bytes stored = bytesFrom({7});
  const std::size_t first = compressor.append(blocks::smoothBytes(5000), stored);
  const std::size_t second = compressor.append(blocks::smoothBytes(5000), stored);
  EXPECT_EQ(first, second);
  EXPECT_EQ(stored.size(), 1 + first + second);
  EXPECT_EQ(stored.front(), std::byte{7});
}

// One by hand: "abc" in a stored block of deflate, and as literals of LZ4.
TEST(Compression, ReadsStreamsOfOthers) {
  const Bytes abc = bytesFrom({'a', 'b', 'c'});
  const Bytes zlib =
      bytesFrom({0x78, 0x01, 0x01, 0x03, 0x00, 0xfc, 0xff, 'a', 'b', 'c', 0x02, 0x4d, 0x01, 0x27});
  EXPECT_TRUE(decompresses(Codec::zlib, zlib, 3, abc));
  EXPECT_TRUE(decompresses(Codec::lz4, bytesFrom({0x30, 'a', 'b', 'c'}), 3, abc));
}

TEST(Compression, RefusesAnotherSizeThanThePieceHas) {
  const Bytes plain = blocks::smoothBytes(1000);
  for (const Codec codec : blocks::everyCodec) {
    const Bytes stored = compressed(plain, codec, 9);
    for (const std::size_t size : {0U, 1U, 999U, 1001U, 2000U}) {
      EXPECT_FALSE(decompresses(codec, stored, size, Bytes(size))) << static_cast<int>(codec) << " " << size;
    }
  }
}

TEST(Compression, RefusesEveryPieceThatIsCutOff) {
  const Bytes plain = blocks::smoothBytes(1000);
  for (const Codec codec : blocks::everyCodec) {
    Bytes stored = compressed(plain, codec, 9);
    while (!stored.empty()) {
      stored.pop_back();
      EXPECT_FALSE(decompresses(codec, stored, 1000, plain))
          << static_cast<int>(codec) << " " << stored.size();
    }
  }
}

TEST(Compression, RefusesBytesBehindThePiece) {
  const Bytes plain = blocks::smoothBytes(1000);
  for (const Codec codec : blocks::everyCodec) {
    Bytes stored = compressed(plain, codec, 9);
    stored.push_back(std::byte{0});
    EXPECT_FALSE(decompresses(codec, stored, 1000, plain)) << static_cast<int>(codec);
  }
}

TEST(Compression, RefusesAZlibStreamWithAWrongSumOrPresetDictionary) {
  const Bytes abc = bytesFrom({'a', 'b', 'c'});
  Bytes stored = compressed(abc, Codec::zlib, 6);
  stored.back() ^= std::byte{1};
  EXPECT_FALSE(decompresses(Codec::zlib, stored, 3, abc));
  EXPECT_FALSE(
      decompresses(Codec::zlib, bytesFrom({0x78, 0xbb, 0, 0, 0, 1, 1, 0, 0, 0xff, 0xff, 0, 0, 0, 1}), 0, {}));
}

TEST(Compression, RatioOfEachCodecIsItsMost) {
  EXPECT_EQ(mostDecodedBytes(Codec::none, 10), 10U);
  EXPECT_EQ(mostDecodedBytes(Codec::zlib, 10), 10320U);
  EXPECT_EQ(mostDecodedBytes(Codec::lz4, 10), 2550U);
  const std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(mostDecodedBytes(Codec::zlib, largest / 1032), largest / 1032 * 1032);
  EXPECT_EQ(mostDecodedBytes(Codec::zlib, largest / 1032 + 1), largest);
}

TEST(Compression, RatiosHoldForTheMostCompressiblePiece) {
  const Bytes zeros(4000000);
  for (const Codec codec : blocks::everyCodec) {
    const Bytes stored = compressed(zeros, codec, 12);
    EXPECT_LE(zeros.size(), mostDecodedBytes(codec, stored.size()));
    EXPECT_GT(zeros.size() * 100, mostDecodedBytes(codec, stored.size()) * 95) << "no bound is slack";
  }
}

TEST(Compression, PiecesOfLz4AreCountedInThirtyTwoBits) {
  EXPECT_EQ(mostPieceBytes(Codec::lz4), 2113929216U);
  EXPECT_FALSE(Decompressor().decompress(Codec::lz4, Bytes(1), nullptr, 2147483648U));
}

struct WrongLevel {
  Codec codec;
  int level;
  const char* text;
};

TEST(Compression, RefusesLevelsThatTheCodecDoesNotHave) {
  for (const WrongLevel& row : {
           WrongLevel{Codec::zlib, 0, "zlib: expected a level from 1 to 12, found 0"},
           WrongLevel{Codec::zlib, 13, "zlib: expected a level from 1 to 12, found 13"},
           WrongLevel{Codec::lz4, 0, "LZ4: expected a level from 1 to 12, found 0"},
           WrongLevel{Codec::lz4, -1, "LZ4: expected a level from 1 to 12, found -1"},
       }) {
    try {
      const Compressor compressor(row.codec, row.level);
      ADD_FAILURE() << "no exception instead of: " << row.text;
    } catch (const std::invalid_argument& error) {
      EXPECT_STREQ(error.what(), row.text);
    }
  }
}

} // namespace
