// SPDX-License-Identifier: BSD-3-Clause
// Pins every call of a load to the client, the transformation and the calendar, in order and with arguments.
#include "loader/trajectory/trajectory_columns.h"
#include "tests/loader/trajectory/scripted_load.h"

#include <malloc.h>

namespace {

using namespace flight;

Calls opening() {
  return {"Context(,)", "Pointcloud()", "OpenSettings()", "open(/data/flight.pofx)",
          "select()",   "metaData()"};
}

Calls absentItems() {
  return {"MetaData::exists(riegl.geo_tag)", "MetaData::exists(riegl.time_base)",
          "MetaData::exists(riegl.trajectory_info)"};
}

Calls questions() {
  Calls calls;
  for (const std::string& name : columnNames) {
    calls.push_back("pointAttribute()");
    calls.push_back("exists(" + name + ")");
  }
  return calls;
}

Calls freshColumns() {
  Calls calls = questions();
  for (const char* name : {"timestamp", "roll", "pitch", "yaw", "path_length"}) {
    calls.push_back(std::string("bind(riegl.pof_") + name + ",10,0)");
  }
  return calls;
}

Calls boundPositions() {
  return {"bind(riegl.pof_latitude,10,0)", "bind(riegl.pof_longitude,10,0)", "bind(riegl.pof_height,10,0)"};
}

Calls block() {
  return {"next(5000000)",       "transform(+proj=latlong,epsg:32633,5000000,false)",
          "callback(GPSTime)",   "callback(Roll)",
          "callback(Pitch)",     "callback(Yaw)",
          "callback(Positions)", "callback(PofPathLength)"};
}

Calls closing() {
  return {"~QuerySelect", "~OpenSettings", "~Pointcloud", "~Context"};
}

TEST_F(ScriptedLoad, CallsTheClientInThisOrder) {
  script.blocks = {5000000, 3};
  EXPECT_EQ(load(), "");
  Calls expected = opening();
  append(expected, absentItems());
  append(expected, freshColumns());
  append(expected, boundPositions());
  for (int blocks = 0; blocks < 2; ++blocks) {
    append(expected, block());
    append(expected, freshColumns());
  }
  expected.push_back("next(5000000)");
  append(expected, closing());
  EXPECT_EQ(script.calls, expected);
}

TEST_F(ScriptedLoad, ReadsTheItemsThatThereAre) {
  script.metadata = {{"riegl.geo_tag", "{}"},
                     {"riegl.time_base", R"({"epoch":"2023-05-04T00:00:00Z","system":"UTC"})"},
                     {"riegl.trajectory_info", "{}"}};
  EXPECT_EQ(load(), "");
  const Calls expected{"metaData()",
                       "MetaData::exists(riegl.geo_tag)",
                       "MetaData::get(riegl.geo_tag,)",
                       "MetaData::exists(riegl.time_base)",
                       "MetaData::get(riegl.time_base,)",
                       "getWeekDay(2023,5,4)",
                       "MetaData::exists(riegl.trajectory_info)",
                       "MetaData::get(riegl.trajectory_info,)",
                       "pointAttribute()"};
  EXPECT_EQ(Calls(script.calls.begin() + 5, script.calls.begin() + 14), expected);
}

TEST_F(ScriptedLoad, AsksTheCalendarForTheDateOfAWrongTimeBaseToo) {
  script.metadata = {{"riegl.time_base", "no json"}};
  EXPECT_EQ(load(), "");
  EXPECT_EQ(script.callsThatBegin("getWeekDay"), Calls{"getWeekDay(-1,-1,-1)"});
}

TEST_F(ScriptedLoad, AsksForNothingBehindTheFirstMissingAttribute) {
  script.columns.erase("riegl.pof_roll");
  EXPECT_EQ(load(), "pofx2nimbra::iniMe: no pof_roll");
  EXPECT_EQ(script.callsThatBegin("exists"),
            (Calls{"exists(riegl.pof_timestamp)", "exists(riegl.pof_roll)"}));
  EXPECT_TRUE(script.callsThatBegin("bind").empty());
  EXPECT_TRUE(grid.representations().empty());
}

TEST_F(ScriptedLoad, WarnsOfGpsTimeBeforeItAsksForTheAttributes) {
  script.metadata = {{"riegl.time_base", R"({"epoch":"2023-05-04T00:00:00Z","system":"GPS"})"}};
  script.columns.clear();
  EXPECT_EQ(load(), "pofx2nimbra::iniMe: no timestamp");
  EXPECT_EQ(console.lines().size(), 2U);
}

TEST_F(ScriptedLoad, HandsTheTransformationLongitudeLatitudeHeight) {
  script.columns["riegl.pof_longitude"] = scripted::filledWith(16);
  script.columns["riegl.pof_latitude"] = scripted::filledWith(48);
  script.columns["riegl.pof_height"] = scripted::filledWith(300);
  script.blocks = {3};
  ASSERT_EQ(load(), "");
  EXPECT_EQ(recorded::transformation().firstPoints[1], Point(16, 48, 300));
  const auto points = support::values<Point>(support::field(grid, "Positions"), "flight_Fragment_0");
  ASSERT_EQ(points.size(), 3U);
  EXPECT_EQ(points[0], Point(1016, 48, 300));
}

/// Makes the C library fill new memory during its lifetime, so that no value is zero by chance.
struct FilledMemory {
  FilledMemory() { mallopt(M_PERTURB, 0x5A); }
  FilledMemory(const FilledMemory&) = delete;
  FilledMemory& operator=(const FilledMemory&) = delete;
  ~FilledMemory() { mallopt(M_PERTURB, 0); }
};

TEST_F(ScriptedLoad, ShowsTheClientZeroFilledArrays) {
  const FilledMemory memory;
  std::vector<double> first, last;
  const auto look = [&](void* buffer, unsigned int, std::uint64_t) {
    first.push_back(static_cast<double*>(buffer)[0]);
    last.push_back(static_cast<double*>(buffer)[4999999]);
  };
  for (const std::string& name : columnNames) {
    script.columns[name] = look;
  }
  script.blocks = {1};
  ASSERT_EQ(load(), "");
  EXPECT_EQ(first, std::vector<double>(8, 0.0));
  EXPECT_EQ(last, std::vector<double>(8, 0.0));
}

TEST_F(ScriptedLoad, ReadsPositionsOfEveryBlockIntoTheSameArrays) {
  std::map<std::string, std::vector<void*>> buffers;
  for (const std::string& name : columnNames) {
    script.columns[name] = [&, name](void* buffer, unsigned int, std::uint64_t) {
      buffers[name].push_back(buffer);
    };
  }
  script.blocks = {2, 2};
  ASSERT_EQ(load(), "");
  for (const std::string& name : columnNames) {
    const bool once = name.find("tude") != std::string::npos || name.find("height") != std::string::npos;
    EXPECT_EQ(buffers[name][0] == buffers[name][1], once) << name;
  }
}

TEST_F(ScriptedLoad, EndsWithTheTextOfTheTransformation) {
  recorded::transformation().answer = "no such place";
  script.blocks = {3};
  leverArm = "/nowhere";
  EXPECT_EQ(load(),
            "convertPOFtoZ4: Coordinate Transformation failed: fromProjStr:+proj=latlong to epsg:32633 "
            "with Error: no such place");
  EXPECT_TRUE(script.callsThatBegin("callback").empty());
  EXPECT_EQ(Calls(script.calls.end() - 4, script.calls.end()), closing());
}

TEST_F(ScriptedLoad, KeepsTheBlocksBeforeAFailedTransformation) {
  recorded::transformation().answer = "no such place";
  recorded::transformation().answerFromCall = 2;
  script.blocks = {3, 3};
  EXPECT_NE(load(), "");
  for (const std::string& name : support::fieldNames(grid)) {
    EXPECT_EQ(support::fragmentNames(support::field(grid, name)), Calls{"flight_Fragment_0"}) << name;
  }
}

TEST_F(ScriptedLoad, MakesNoFragmentForPositionsThatAreNotTransformed) {
  recorded::transformation().answer = "no such place";
  script.blocks = {3};
  EXPECT_NE(load(), "");
  EXPECT_TRUE(support::field(grid, "GPSTime")->fragmentIDCollection()->fragments().empty());
}

TEST_F(ScriptedLoad, GoesOnWhenAnAttributeIsGoneAfterTheFirstBlock) {
  script.blocks = {3};
  callback = [this](const auto&, const std::string& name, const bool&) {
    if (name == "PofPathLength") {
      script.columns.erase("riegl.pof_pitch");
    }
  };
  EXPECT_EQ(load(), "");
  EXPECT_EQ(script.callsThatBegin("exists").size(), 8u + 3u); // asked again, up to the missing one
  EXPECT_EQ(script.callsThatBegin("next").size(), 2u);
}

TEST_F(ScriptedLoad, CallsAFreshCopyOfTheCallbackForEveryBlock) {
  std::vector<int> seen;
  callback = [&seen, calls = 0](const auto&, const std::string&, const bool&) mutable {
    seen.push_back(++calls);
  };
  script.blocks = {3, 3};
  EXPECT_EQ(load(), "");
  EXPECT_EQ(seen, (std::vector<int>{1, 2, 3, 4, 5, 6, 1, 2, 3, 4, 5, 6}));
}

TEST_F(ScriptedLoad, NamesFragmentsOfAFileWithoutAStemByTheirNumber) {
  path = "/data/";
  script.blocks = {3, 3};
  EXPECT_EQ(load(), "");
  EXPECT_EQ(support::fragmentNames(support::field(grid, "Yaw")), (Calls{"_Fragment_0", "_Fragment_1"}));
}

TEST_F(ScriptedLoad, ReplacesTheLeapSecondFlagWithEveryBlock) {
  std::vector<const void*> flags;
  callback = [&](const auto&, const std::string& name, const bool&) {
    if (name == "Roll") { // right after the time column was published
      const auto& attributes = support::field(grid, "GPSTime")->attributes();
      flags.push_back(&*attributes.getAttribute("LeapSecondsAdded?"));
    }
  };
  script.blocks = {3, 3};
  EXPECT_EQ(load(), "");
  ASSERT_EQ(flags.size(), 2U);
  EXPECT_NE(flags[0], flags[1]);
}

TEST_F(ScriptedLoad, GivesTheTimeColumnANewAgeWithEveryBlock) {
  std::vector<std::uint64_t> ages;
  callback = [&](const auto&, const std::string& name, const bool&) {
    if (name == "Roll") {
      ages.push_back(support::field(grid, "GPSTime")->lastChange());
    }
  };
  script.blocks = {3, 3};
  EXPECT_EQ(load(), "");
  EXPECT_THAT(ages, testing::ElementsAre(testing::Gt(0U), testing::Gt(ages.at(0))));
}

TEST(Columns, WithoutABufferArePassedOver) {
  Nimbra::Grid grid;
  const Nimbra::Field::Pointer time = grid["GPSTime"];
  const auto fragment = time->makeFragmentID("block");
  Riegl::TrajectoryColumns columns;
  Riegl::publishColumns(columns, fragment, 3, true, [](const auto&, const std::string& name, const bool&) {
    ADD_FAILURE() << "called back for " << name;
  });
  EXPECT_TRUE(support::fragmentNames(time).empty());
}

TEST(Columns, StandInTheOrderOfTheRecord) {
  const Riegl::TrajectoryColumns c;
  const std::vector<const void*> members{&c.pathLength, &c.positions, &c.yaw, &c.pitch, &c.roll, &c.gpsTime};
  EXPECT_TRUE(std::is_sorted(members.begin(), members.end()));
}

TEST_F(ScriptedLoad, ReleasesItsBuffersAheadOfTheQuery) {
  std::map<std::string, std::int64_t> bytesAtTheEndOf;
  script.atEnd = [&bytesAtTheEndOf](const std::string& object) {
    bytesAtTheEndOf[object] = Torvel::ChunkBase::TotalMemsize;
  };
  const std::int64_t bytesBefore = Torvel::ChunkBase::TotalMemsize;
  EXPECT_EQ(load(), "");
  EXPECT_EQ(bytesAtTheEndOf.at("QuerySelect"), bytesBefore);
}

TEST_F(ScriptedLoad, SetsTheFolderOfTheProjectionDataBehindTheMetadata) {
  Torvel::setEnv("PROJ_LIB", "/nowhere", true);
  script.metadata = {{"riegl.time_base", R"({"epoch":"a-b-c"})"}};
  EXPECT_EQ(load(), "stoi For File /data/flight.pofx");
  EXPECT_EQ(Torvel::getEnv("PROJ_LIB"), "/nowhere");
}

TEST_F(ScriptedLoad, SetsTheFolderOfTheProjectionData) {
  Torvel::setEnv("PROJ_LIB", "/nowhere", true);
  script.columns.clear();
  EXPECT_EQ(load(), "pofx2nimbra::iniMe: no timestamp");
  EXPECT_EQ(Torvel::getEnv("PROJ_LIB"), Torvel::getExecutableDir());
}

TEST_F(ScriptedLoad, ReadsTheLeverArmFileWhenTheDatabaseIsClosed) {
  script.blocks = {3};
  leverArm = "/nowhere/lever-arm.txt";
  EXPECT_EQ(load(), "pofx2nimbra:Error opening leverarm file: /nowhere/lever-arm.txt");
  EXPECT_EQ(script.calls.back(), "~Context");
  EXPECT_EQ(script.liveObjects, 0);
}

} // namespace
