// SPDX-License-Identifier: BSD-3-Clause
// Pins the callback of a load: order of calls, memory, and its exceptions.
#include "tests/loader/trajectory/flight.h"

#include <stdexcept>

namespace {

using namespace flight;

TEST_F(Load, ShowsTheColumnsToTheCallbackInOrder) {
  std::vector<std::string> seen;
  callback = [&](const ChunkPointer&, const std::string& name, const bool&) { seen.push_back(name); };
  givenFlight(3);
  ASSERT_EQ(load(), "");
  EXPECT_EQ(seen, fieldsInOrder);
}

TEST_F(Load, ShowsColumnsCutToTheBlock) {
  std::map<std::string, std::size_t> seen;
  callback = [&](const ChunkPointer& chunk, const std::string& name, const bool&) {
    seen[name] = chunk->elementCount();
  };
  givenFlight(3);
  ASSERT_EQ(load(), "");
  for (const std::string& name : fieldsInOrder) {
    EXPECT_EQ(seen[name], 3U) << name;
  }
}

TEST_F(Load, ShowsColumnsInTheirElementTypes) {
  std::map<std::string, const std::type_info*> seen;
  callback = [&](const ChunkPointer& chunk, const std::string& name, const bool&) {
    seen[name] = &chunk->elementType();
  };
  givenFlight(3);
  ASSERT_EQ(load(), "");
  for (const std::string& name : fieldsInOrder) {
    EXPECT_EQ(*seen[name], name == "Positions" ? typeid(Point) : typeid(double)) << name;
  }
}

TEST_F(Load, PublishesTheMemoryThatTheCallbackSees) {
  std::map<std::string, const void*> seen;
  callback = [&](const ChunkPointer& chunk, const std::string& name, const bool&) {
    seen[name] = chunk->data();
  };
  givenFlight(3);
  ASSERT_EQ(load(), "");
  for (const std::string& name : fieldsInOrder) {
    EXPECT_EQ(field(name)->array("flight_Fragment_0")->chunkBase()->data(), seen[name]) << name;
  }
}

TEST_F(Load, PublishesWhatTheCallbackChanges) {
  callback = [](const ChunkPointer& chunk, const std::string& name, const bool&) {
    if (name == "Roll") {
      static_cast<double*>(chunk->data())[1] = 77;
    }
  };
  givenFlight(3);
  ASSERT_EQ(load(), "");
  EXPECT_EQ(values("Roll", "flight_Fragment_0")[1], 77);
}

TEST_F(Load, ShowsPositionsAfterTheirConversion) {
  double easting = 0;
  callback = [&](const ChunkPointer& chunk, const std::string& name, const bool&) {
    if (name == "Positions") {
      easting = static_cast<Point*>(chunk->data())[0][0];
    }
  };
  epsg = 32633;
  givenFlight(3);
  ASSERT_EQ(load(), "");
  EXPECT_EQ(easting, positions("flight_Fragment_0")[0][0]);
  EXPECT_GT(easting, 500000);
}

TEST_F(Load, PassesTheTimeSystemWithEveryColumn) {
  std::vector<bool> seen;
  callback = [&](const ChunkPointer&, const std::string&, const bool& isUTC) { seen.push_back(isUTC); };
  givenFlight(3, gpsTimeBase);
  ASSERT_EQ(load(), "");
  givenFlight(3, utcTimeBase);
  ASSERT_EQ(load(), "");
  EXPECT_THAT(seen, testing::ElementsAre(false, false, false, false, false, false, true, true, true, true,
                                         true, true));
}

TEST_F(Load, CallsBackBeforeTheColumnIsOnTheGrid) {
  callback = [&](const ChunkPointer&, const std::string& name, const bool&) {
    EXPECT_TRUE(field(name)->fragments().empty()) << name;
    EXPECT_TRUE(field(name)->attributes().empty()) << name;
  };
  givenFlight(3);
  EXPECT_EQ(load(), "");
}

TEST_F(Load, EndsWithTheTextOfAnExceptionOfTheCallback) {
  callback = [](const ChunkPointer&, const std::string& name, const bool&) {
    if (name == "Pitch") {
      throw std::runtime_error("enough");
    }
  };
  givenFlight(3);
  givenLeverArm("leverarm:1:2:3\nmisalignment:4:5:6\n");
  EXPECT_EQ(load(), "enough For File " + path);
  EXPECT_EQ(support::fragmentNames(field("Roll")).size(), 1u);
  EXPECT_TRUE(support::fragmentNames(field("Pitch")).empty());
  EXPECT_TRUE(grid.attributes().empty());
}

TEST_F(Load, PassesOnExceptionsThatAreNotStandard) {
  callback = [](const ChunkPointer&, const std::string&, const bool&) { throw 42; };
  givenFlight(3);
  EXPECT_THROW(load(), int);
}

} // namespace
