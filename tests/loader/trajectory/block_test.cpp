// SPDX-License-Identifier: BSD-3-Clause
// Pins the blocks of a load: a full block, one record more, and their fragments.
#include "tests/loader/trajectory/flight.h"

namespace {

using namespace flight;
using testing::ElementsAre;

constexpr std::uint64_t blockSize = 5000000;

/// A long flight in a small file: integers of one byte that repeat every thousand records.
class LongLoad : public Load {
 protected:
  void givenLongFlight(std::uint64_t records) {
    container::Writer writer(path);
    for (const std::string& name : attributesInOrder) {
      container::Attribute column;
      column.name = name;
      column.type = container::ElementType::int8;
      writer.addAttribute(column);
    }
    std::vector<std::int8_t> pattern(100000);
    for (std::size_t i = 0; i < pattern.size(); ++i) {
      pattern[i] = patternAt(i);
    }
    const std::vector<const void*> places(attributesInOrder.size(), pattern.data());
    for (std::uint64_t left = records; left != 0;) {
      const std::uint64_t piece = std::min<std::uint64_t>(left, pattern.size());
      writer.write(piece, places);
      left -= piece;
    }
    writer.finish();
  }

  static std::int8_t patternAt(std::uint64_t record) {
    return static_cast<std::int8_t>(record % 100000 % 1000 % 60);
  }

  void expectBlock(const std::string& fragment, std::uint64_t firstRecord, std::size_t count) const {
    for (const std::string& name : fieldsInOrder) {
      EXPECT_EQ(field(name)->array(fragment)->chunkBase()->elementCount(), count) << name << ' ' << fragment;
    }
    for (const char* name : {"GPSTime", "Roll", "Pitch", "Yaw", "PofPathLength"}) {
      const auto chunk = support::chunkOf<double>(field(name), fragment);
      EXPECT_EQ(chunk->values().front(), patternAt(firstRecord)) << name;
      EXPECT_EQ(chunk->values().back(), patternAt(firstRecord + count - 1)) << name;
    }
    const auto points = support::chunkOf<Point>(field("Positions"), fragment);
    EXPECT_NEAR(points->values().back()[0], patternAt(firstRecord + count - 1), 1e-9);
    EXPECT_EQ(points->values().back()[2], patternAt(firstRecord + count - 1));
  }
};

TEST_F(LongLoad, OfOneFullBlockGivesOneFragment) {
  givenLongFlight(blockSize);
  ASSERT_EQ(load(), "");
  expectEveryFieldToHave({"flight_Fragment_0"});
  expectBlock("flight_Fragment_0", 0, blockSize);
}

TEST_F(LongLoad, OfOneRecordMoreThanABlockGivesTwoFragments) {
  std::vector<std::string> seen;
  callback = [&](const ChunkPointer&, const std::string& name, const bool&) { seen.push_back(name); };
  givenLongFlight(blockSize + 1);
  ASSERT_EQ(load(), "");
  expectEveryFieldToHave({"flight_Fragment_0", "flight_Fragment_1"});
  expectBlock("flight_Fragment_0", 0, blockSize);
  expectBlock("flight_Fragment_1", blockSize, 1);
  EXPECT_EQ(seen.size(), 12U);
  EXPECT_THAT(support::attributeNames(field("GPSTime")->attributes()), ElementsAre("LeapSecondsAdded?"));
}

} // namespace
