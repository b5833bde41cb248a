// SPDX-License-Identifier: BSD-3-Clause
// The checksum of a block against its definition, byte by byte from a table.
#include "container/format/checksum.h"

#include "container/format/wide_checksum.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using container::crc32;

using Bytes = std::vector<unsigned char>;

std::array<std::uint32_t, 256> remainders() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
    table[byte] = byte;
    for (int bit = 0; bit < 8; ++bit) {
      table[byte] = (table[byte] >> 1) ^ ((table[byte] & 1) != 0 ? 0xedb88320U : 0U);
    }
  }
  return table;
}

std::uint32_t definition(std::uint32_t previous, const unsigned char* data, std::size_t bytes) {
  static const auto table = remainders();
  std::uint32_t state = ~previous;
  for (std::size_t i = 0; i < bytes; ++i) {
    state = (state >> 8) ^ table[(state ^ data[i]) & 0xffU];
  }
  return ~state;
}

Bytes randomBytes(std::size_t count) {
  std::mt19937_64 random(17);
  Bytes bytes(count);
  for (unsigned char& byte : bytes) {
    byte = static_cast<unsigned char>(random());
  }
  return bytes;
}

// Lengths around every border: a register, a step, a piece with and without the step before it, one call, several
// calls.
std::vector<std::size_t> lengths() {
  std::vector<std::size_t> found{0, 1, 2, 3, 4, 15, 16, 17, 1000};
  for (const std::size_t border :
       std::initializer_list<std::size_t>{64, 256, 512, 1024, 15360, 15524, 16119, 16316, 30884, 31476, 31744,
                                          32000, 63488, 63744, 65536, 65792, 131072, 262144, 300000}) {
    for (std::size_t nearby = border - 3; nearby <= border + 3; ++nearby) {
      found.push_back(nearby);
    }
  }
  return found;
}

TEST(Checksum, IsThatOfTheKnownExample) {
  EXPECT_EQ(crc32(0, "123456789", 9), 0xcbf43926U);
}

TEST(Checksum, IsTheDefinitionsAtEveryBorder) {
  const Bytes bytes = randomBytes(300100);
  for (const std::size_t length : lengths()) {
    EXPECT_EQ(crc32(0, bytes.data(), length), definition(0, bytes.data(), length)) << length << " bytes";
  }
}

TEST(Checksum, DoesNotDependOnWhereTheBytesLie) {
  const Bytes bytes = randomBytes(70100);
  for (std::uint32_t start = 0; start < 66; ++start) {
    EXPECT_EQ(crc32(start, &bytes[start], 70000), definition(start, &bytes[start], 70000)) << start;
  }
}

TEST(Checksum, GoesOnWhereAnEarlierCallEnded) {
  const Bytes bytes = randomBytes(200000);
  const std::uint32_t whole = crc32(0, bytes.data(), bytes.size());
  for (const std::size_t first :
       std::initializer_list<std::size_t>{1, 255, 256, 4096, 65536, 99999, 200000}) {
    const std::uint32_t begun = crc32(0, bytes.data(), first);
    EXPECT_EQ(crc32(begun, bytes.data() + first, bytes.size() - first), whole) << first;
  }
}

// At every position: some bytes are folded onto others, some receive a fold, some are read through a mask.
TEST(Checksum, ChangesWithEveryBytesBits) {
  Bytes bytes = randomBytes(66000);
  const std::uint32_t before = crc32(0, bytes.data(), bytes.size());
  std::mt19937 random(5);
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    const auto bit = static_cast<unsigned char>(1U << random() % 8);
    bytes[at] ^= bit;
    EXPECT_NE(crc32(0, bytes.data(), bytes.size()), before) << "byte " << at;
    bytes[at] ^= bit;
  }
}

TEST(Checksum, ReadsNothingBeforeTheFirstByteOrBehindTheLast) {
  for (const std::size_t length : std::initializer_list<std::size_t>{256, 31744, 32000, 65536, 65537}) {
    const Bytes whole = randomBytes(length);
    const auto own = std::make_unique<unsigned char[]>(length); // whose borders a sanitizer watches
    std::memcpy(own.get(), whole.data(), length);
    EXPECT_EQ(crc32(0, own.get(), length), definition(0, whole.data(), length));
  }
}

TEST(WideChecksum, IsTheDefinitionsForEveryNumberOfSteps) {
  if (!container::hasWideMultiplication()) {
    GTEST_SKIP() << "no wide carry-less multiplication on this processor or in this build";
  }
  const Bytes bytes = randomBytes(400 * container::checksumStepBytes);
  for (std::size_t steps = 1; steps <= 400; ++steps) {
    const std::size_t length = steps * container::checksumStepBytes;
    EXPECT_EQ(container::wideCrc32(7, bytes.data(), steps), definition(7, bytes.data(), length)) << steps;
  }
}

} // namespace
