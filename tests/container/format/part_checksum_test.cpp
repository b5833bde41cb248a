// SPDX-License-Identifier: BSD-3-Clause
// Checksums of parts against the definition, bit by bit.
#include "container/format/part_checksum.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace {

using container::continuedChecksum;
using container::joinedChecksum;

std::uint32_t definition(std::uint32_t previous, const std::string& bytes) {
  std::uint32_t state = ~previous;
  for (const char byte : bytes) {
    state ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) {
      state = (state >> 1) ^ ((state & 1) != 0 ? 0xedb88320U : 0U);
    }
  }
  return ~state;
}

std::string randomText(std::size_t bytes, unsigned seed) {
  std::mt19937 random(seed);
  std::string text(bytes, ' ');
  for (char& letter : text) {
    letter = static_cast<char>(random() % 256);
  }
  return text;
}

TEST(PartChecksum, IsThatOfTheKnownExample) {
  EXPECT_EQ(continuedChecksum(0, "123456789", 9), 0xcbf43926U);
}

TEST(PartChecksum, GoesOnWhereAnEarlierCallEnded) {
  const std::string text = randomText(1000, 1);
  for (const std::size_t first : {0U, 1U, 500U, 1000U}) {
    const std::uint32_t begun = continuedChecksum(0, text.data(), first);
    EXPECT_EQ(continuedChecksum(begun, text.data() + first, 1000 - first), definition(0, text)) << first;
  }
}

TEST(PartChecksum, IsJoinedForEveryLength) {
  const std::string first = randomText(77, 2);
  for (std::size_t bytes = 0; bytes < 600; ++bytes) {
    const std::string second = randomText(bytes, 3);
    EXPECT_EQ(joinedChecksum(definition(0, first), definition(0, second), bytes),
              definition(0, first + second))
        << bytes;
  }
}

TEST(PartChecksum, IsJoinedForLongRuns) {
  const std::string first = randomText(1000, 4);
  for (const std::size_t bytes : {65535U, 65536U, 65537U, 1048576U, 5000000U}) {
    const std::string second = randomText(bytes, 5);
    EXPECT_EQ(joinedChecksum(definition(0, first), definition(0, second), bytes),
              definition(0, first + second))
        << bytes;
  }
}

// Beyond 4 GiB, in steps: zeros have a checksum of their own, which joining to itself doubles.
TEST(PartChecksum, IsJoinedBeyondFourGibibytes) {
  std::uint32_t zeros = definition(0, std::string(1, '\0'));
  std::uint64_t bytes = 1;
  for (; bytes < 1ULL << 33; bytes *= 2) {
    zeros = joinedChecksum(zeros, zeros, bytes);
  }
  const std::uint32_t text = definition(0, "text");
  std::uint32_t inTwo = joinedChecksum(text, zeros, bytes);
  EXPECT_EQ(joinedChecksum(inTwo, zeros, bytes),
            joinedChecksum(text, joinedChecksum(zeros, zeros, bytes), bytes * 2));
}

TEST(PartChecksum, OfNothingChangesNothing) {
  EXPECT_EQ(joinedChecksum(123, 0, 0), 123U);
  EXPECT_EQ(joinedChecksum(0, 123, 5), 123U);
  EXPECT_EQ(continuedChecksum(123, nullptr, 0), 123U);
}

} // namespace
