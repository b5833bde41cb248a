// SPDX-License-Identifier: BSD-3-Clause
// The filters against their definition, byte by byte.
#include "container/codec/filters.h"

#include "tests/container/codec/blocks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>

namespace {

using blocks::Bytes;
using container::codec::applyFilter;
using container::codec::Filter;
using container::codec::RecordShape;
using container::codec::removeFilter;
using testing::ElementsAre;

std::uint64_t valueAt(const Bytes& bytes, std::size_t index, std::size_t width) {
  std::uint64_t value = 0;
  std::memcpy(&value, &bytes[index * width], width);
  return value;
}

/// What the format's description says, one value after the other.
Bytes definition(Filter filter, const RecordShape& shape, const Bytes& records) {
  Bytes filtered(records.size());
  for (std::size_t i = 0; i < shape.values(); ++i) {
    std::uint64_t value = valueAt(records, i, shape.valueBytes);
    if (filter == Filter::deltaAndShuffle && i >= shape.length) {
      value -= valueAt(records, i - shape.length, shape.valueBytes);
    }
    for (std::size_t b = 0; b < shape.valueBytes; ++b) {
      const std::size_t to = filter == Filter::none ? i * shape.valueBytes + b : b * shape.values() + i;
      filtered[to] = static_cast<std::byte>(value >> (8 * b) & 0xff);
    }
  }
  return filtered;
}

struct Case {
  Filter filter;
  std::size_t valueBytes;
};

void PrintTo(const Case& row, std::ostream* out) {
  *out << "filter " << static_cast<int>(row.filter) << ", " << row.valueBytes << " bytes";
}

class EveryFilter : public testing::TestWithParam<Case> {
 protected:
  template <class Check>
  void forEveryShape(Check check) {
    for (const std::size_t length : {1U, 2U, 3U, 4U, 5U, 8U, 16U, 33U, 5000U}) {
      for (const std::size_t count : {0U, 1U, 2U, 3U, 15U, 16U, 17U, 33U, 255U, 1025U, 3001U}) {
        if (length * count < 100000) {
          SCOPED_TRACE(std::to_string(count) + " records of " + std::to_string(length));
          check(RecordShape{GetParam().valueBytes, length, count});
        }
      }
    }
  }
};

TEST_P(EveryFilter, DoesWhatTheFormatSays) {
  forEveryShape([&](const RecordShape& shape) {
    const Bytes records = blocks::randomBytes(shape.bytes());
    Bytes filtered(records.size());
    applyFilter(GetParam().filter, shape, records.data(), filtered.data());
    EXPECT_TRUE(filtered == definition(GetParam().filter, shape, records));
  });
}

TEST_P(EveryFilter, IsUndone) {
  forEveryShape([&](const RecordShape& shape) {
    const Bytes records = blocks::randomBytes(shape.bytes());
    const Bytes filtered = definition(GetParam().filter, shape, records);
    Bytes restored(records.size());
    removeFilter(GetParam().filter, shape, filtered.data(), restored.data());
    EXPECT_TRUE(restored == records);
  });
}

TEST_P(EveryFilter, IsUndoneForARunOfRecords) {
  const RecordShape shape{GetParam().valueBytes, 3, 2000};
  const std::size_t recordBytes = 3 * shape.valueBytes;
  const Bytes records = blocks::randomBytes(shape.bytes());
  const Bytes filtered = definition(GetParam().filter, shape, records);
  for (const std::size_t first : {0U, 1U, 700U, 1999U, 2000U}) {
    Bytes restored(records.begin(), records.begin() + static_cast<std::ptrdiff_t>(first * recordBytes));
    restored.resize(records.size());
    removeFilter(GetParam().filter, shape, filtered.data(), first, 2000 - first,
                 restored.data() + first * recordBytes);
    EXPECT_TRUE(restored == records) << "from record " << first << " on";
  }
}

// Blocks at odd addresses, whose bounds a sanitizer or valgrind checks.
TEST_P(EveryFilter, NeedsNoAlignmentAndTouchesNothingElse) {
  const RecordShape shape{GetParam().valueBytes, 3, 1001};
  const Bytes records = blocks::randomBytes(shape.bytes());
  const auto from = std::make_unique<std::byte[]>(shape.bytes() + 1);
  const auto filtered = std::make_unique<std::byte[]>(shape.bytes() + 1);
  const auto restored = std::make_unique<std::byte[]>(shape.bytes() + 1);
  std::memcpy(from.get() + 1, records.data(), shape.bytes());
  applyFilter(GetParam().filter, shape, from.get() + 1, filtered.get() + 1);
  removeFilter(GetParam().filter, shape, filtered.get() + 1, restored.get() + 1);
  EXPECT_EQ(std::memcmp(restored.get() + 1, records.data(), shape.bytes()), 0);
}

std::vector<Case> everyCase() {
  std::vector<Case> cases;
  for (const Filter filter : blocks::everyFilter) {
    for (const std::size_t width : {1U, 2U, 4U, 8U}) {
      cases.push_back({filter, width});
    }
  }
  return cases;
}

INSTANTIATE_TEST_SUITE_P(Widths, EveryFilter, testing::ValuesIn(everyCase()), [](const auto& row) {
  return "Filter" + std::to_string(static_cast<int>(row.param.filter)) + "Bytes" +
         std::to_string(row.param.valueBytes);
});

TEST(Filters, OfThreeRecordsAreTheExampleOfTheFormat) {
  const Bytes records = blocks::bytesOf<std::uint16_t>({0x0102, 0x1000, 0x0101, 0x1203, 0x0100, 0x0000});
  const RecordShape shape{2, 2, 3};
  Bytes filtered(records.size());
  applyFilter(Filter::deltaAndShuffle, shape, records.data(), filtered.data());
  std::vector<int> numbers;
  for (const std::byte byte : filtered) {
    numbers.push_back(std::to_integer<int>(byte));
  }
  EXPECT_THAT(numbers, ElementsAre(0x02, 0x00, 0xff, 0x03, 0xff, 0xfd, 0x01, 0x10, 0xff, 0x02, 0xff, 0xed));
}

} // namespace
