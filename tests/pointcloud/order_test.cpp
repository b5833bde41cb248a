// The order of client calls and of side effects on the grid in a point-cloud load.
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

#include "pointcloud/rdbx2Z4.h"
#include "tests/pointcloud/expected_rows.h"
#include "tests/scripted/script.h"
#include "tests/support/grid.h"

namespace {

using support::chart;
using support::field;
using support::scanner;
using Texts = std::vector<std::string>;

constexpr const char* utcTuesday = R"({"epoch":"2015-10-27T00:00:00+00:00","source":"GNSS","system":"UTC"})";

std::string load(Nimbra::Grid& grid, const std::string& path = "folder/scan.rdbx") {
  return Riegl::rdbx2Z4(path, grid, 0, false, nullptr);
}

/// What the client was asked, without the catalogue's questions for each row.
Texts callsWithoutCatalogue() {
  Texts calls;
  for (const std::string& call : scripted::script().calls) {
    if (call != "pointAttribute()" && call.rfind("exists(", 0) != 0) {
      calls.push_back(call);
    }
  }
  return calls;
}

TEST(PointCloudLoad, AsksTheClientInThisOrder) {
  scripted::Script& script = scripted::newScript();
  script.columns["riegl.xyz"] = nullptr;
  script.metadata["riegl.time_base"] = utcTuesday;
  script.blocks = {5000000, 1};
  Nimbra::Grid grid;
  ASSERT_EQ(load(grid), "");
  EXPECT_EQ(callsWithoutCatalogue(),
            (Texts{"Context(,)", "Pointcloud()", "OpenSettings()", "open(folder/scan.rdbx)", "metaData()",
                   "MetaData::exists(riegl.time_base)", "MetaData::get(riegl.time_base,)", "select()",
                   "bind(riegl.xyz,10,0)", "next(5000000)", "bind(riegl.xyz,10,0)", "next(5000000)",
                   "bind(riegl.xyz,10,0)", "next(5000000)", "~QuerySelect", "~OpenSettings", "~Pointcloud",
                   "~Context"}));
}

TEST(PointCloudLoad, DoesNotReadATimeBaseThatIsAbsent) {
  scripted::newScript();
  Nimbra::Grid grid;
  ASSERT_EQ(load(grid), "");
  EXPECT_EQ(scripted::script().callsThatBegin("MetaData::get").size(), 0U);
}

TEST(PointCloudLoad, BindsFreshMemoryForEveryBlockAndPublishesItWithoutACopy) {
  scripted::Script& script = scripted::newScript();
  std::vector<void*> written;
  script.columns["riegl.amplitude"] = [&written](void* buffer, unsigned int, std::uint64_t) {
    written.push_back(buffer);
  };
  script.blocks = {4, 3};
  Nimbra::Grid grid;
  ASSERT_EQ(load(grid), "");
  const auto amplitude = field(grid, "Amplitude");
  ASSERT_EQ(written.size(), 2U);
  EXPECT_EQ(amplitude->array("Fragment_0")->rawData(), written[0]);
  EXPECT_EQ(amplitude->array("Fragment_1")->rawData(), written[1]);
}

TEST(PointCloudLoad, LeavesTheArrayAsTheOnlyOwnerOfAChunk) {
  scripted::Script& script = scripted::newScript();
  script.columns["riegl.amplitude"] = nullptr;
  script.blocks = {4};
  Nimbra::Grid grid;
  ASSERT_EQ(load(grid), "");
  const auto chunk = field(grid, "Amplitude")->array("Fragment_0")->chunkBase();
  EXPECT_EQ(chunk.counts()->strong(), 2); // the array's hold and the one of this test
}

TEST(PointCloudLoad, MakesTheScannerRepresentationFirstAndSharesOneCollectionOfFragments) {
  scripted::newScript();
  Nimbra::Grid grid;
  ASSERT_EQ(load(grid), "");
  EXPECT_EQ(support::representationNames(grid), (Texts{scanner, chart}));
  const auto inChart = field(grid, "Positions");
  const auto inScanner = field(grid, "Positions", scanner);
  EXPECT_NE(inChart.get(), inScanner.get());
  EXPECT_EQ(inChart->fragmentIDCollection().get(), inScanner->fragmentIDCollection().get());
}

TEST(PointCloudLoad, MakesRepresentationsOfThreeDimensions) {
  scripted::newScript();
  Nimbra::Grid grid;
  ASSERT_EQ(load(grid), "");
  for (const auto& representation : grid.representations()) {
    EXPECT_EQ(representation->dimensions(), 3) << representation->name();
  }
}

TEST(PointCloudLoad, SharesOneFragmentIdentityAmongTheFieldsOfBothRepresentations) {
  scripted::Script& script = scripted::newScript();
  for (const char* name : {"riegl.xyz", "riegl.timestamp", "riegl.xyz_socs", "riegl.amplitude"}) {
    script.columns[name] = nullptr;
  }
  script.blocks = {1};
  Nimbra::Grid grid;
  ASSERT_EQ(load(grid), "");
  const auto identity = field(grid, "Positions")->fragments().front().identity;
  EXPECT_EQ(field(grid, "Positions", scanner)->fragments().front().identity.get(), identity.get());
  EXPECT_EQ(field(grid, "GPSTime")->fragments().front().identity.get(), identity.get());
  EXPECT_EQ(field(grid, "Amplitude")->fragments().front().identity.get(), identity.get());
}

TEST(PointCloudLoad, OfNoRecordsMakesFieldsWithoutFragments) {
  scripted::Script& script = scripted::newScript();
  script.columns["riegl.xyz"] = nullptr;
  script.columns["riegl.timestamp"] = nullptr;
  Nimbra::Grid grid;
  ASSERT_EQ(load(grid), "");
  EXPECT_EQ(support::fieldNames(grid), (Texts{"Positions", "GPSTime"}));
  EXPECT_TRUE(field(grid, "Positions")->fragments().empty());
  EXPECT_TRUE(field(grid, "Positions")->fragmentIDCollection()->fragments().empty());
  EXPECT_TRUE(field(grid, "GPSTime")->attributes().empty());
}

TEST(PointCloudLoad, SecondOneIntoTheSameGridStartsAgainAtFragmentZero) {
  Nimbra::Grid grid;
  for (const unsigned int count : {3U, 2U}) {
    scripted::Script& script = scripted::newScript();
    script.columns["riegl.amplitude"] = nullptr;
    script.blocks = {count};
    ASSERT_EQ(load(grid), "");
  }
  EXPECT_EQ(support::fragmentNames(field(grid, "Amplitude")), Texts{"Fragment_0"});
  EXPECT_EQ(field(grid, "Amplitude")->array("Fragment_0")->elementCount(), 2U);
}

TEST(PointCloudLoad, SecondOneIntoTheSameGridMeetsTheFieldsOfTheFirst) {
  Nimbra::Grid grid;
  const Nimbra::Field* amplitude = nullptr;
  for (const std::vector<unsigned int>& blocks : {std::vector<unsigned int>{3, 3}, {2}}) {
    scripted::Script& script = scripted::newScript();
    script.columns["riegl.amplitude"] = nullptr;
    script.blocks = blocks;
    ASSERT_EQ(load(grid), "");
    EXPECT_TRUE(amplitude == nullptr || amplitude == field(grid, "Amplitude").get());
    amplitude = field(grid, "Amplitude").get();
  }
  EXPECT_EQ(support::fragmentNames(field(grid, "Amplitude")), (Texts{"Fragment_0", "Fragment_1"}));
  EXPECT_EQ(support::representationNames(grid), (Texts{scanner, chart}));
  EXPECT_EQ(field(grid, "Positions")->fragmentIDCollection().get(),
            field(grid, "Positions", scanner)->fragmentIDCollection().get());
}

TEST(PointCloudLoad, SecondOneIntoTheSameGridPutsANewFieldOfPositionsIntoTheScannersSystem) {
  Nimbra::Grid grid;
  scripted::newScript();
  ASSERT_EQ(load(grid), "");
  const auto first = field(grid, "Positions", scanner);
  scripted::newScript();
  ASSERT_EQ(load(grid), "");
  EXPECT_NE(field(grid, "Positions", scanner).get(), first.get());
}

TEST(PointCloudLoad, DoesNotReadItsReservedNumber) {
  std::vector<Texts> calls;
  for (const int reserved : {0, 1, -1}) {
    scripted::Script& script = scripted::newScript();
    script.columns["riegl.class"] = nullptr;
    script.blocks = {2};
    Nimbra::Grid grid;
    EXPECT_EQ(Riegl::rdbx2Z4("scan.rdbx", grid, reserved, false, nullptr), "");
    calls.push_back(script.calls);
  }
  EXPECT_EQ(calls, std::vector<Texts>(3, calls[0]));
}

TEST(PointCloudLoad, LeavesWhatTheGridHeldBefore) {
  scripted::newScript();
  Nimbra::Grid grid;
  Nimbra::Representation& own = grid.makeCartesianRepresentation(3, "Own", 0);
  const Nimbra::Field::Pointer marks = own.makeField(own.makeFieldID("Marks"), nullptr, nullptr);
  ASSERT_EQ(load(grid), "");
  EXPECT_EQ(support::representationNames(grid), (Texts{"Own", scanner, chart}));
  EXPECT_EQ(field(grid, "Marks", "Own").get(), marks.get());
}

TEST(PointCloudLoad, CountsItsFragmentsInPlainDecimal) {
  scripted::newScript().blocks.assign(11, 1);
  Nimbra::Grid grid;
  ASSERT_EQ(load(grid), "");
  const Texts names = support::fragmentNames(field(grid, "Positions"));
  ASSERT_EQ(names.size(), 11U);
  EXPECT_EQ(names[9], "Fragment_9");
  EXPECT_EQ(names[10], "Fragment_10");
}

TEST(PointCloudLoad, ReleasesItsBuffersAheadOfTheQuery) {
  scripted::Script& script = scripted::newScript();
  script.columns["riegl.amplitude"] = nullptr;
  std::map<std::string, std::int64_t> bytesAtTheEndOf;
  script.atEnd = [&bytesAtTheEndOf](const std::string& object) {
    bytesAtTheEndOf[object] = Torvel::ChunkBase::TotalMemsize;
  };
  const std::int64_t bytesBefore = Torvel::ChunkBase::TotalMemsize;
  Nimbra::Grid grid;
  ASSERT_EQ(load(grid), "");
  EXPECT_EQ(bytesAtTheEndOf.at("QuerySelect"), bytesBefore);
}

TEST(ShotLoad, ReadsItsWaveformMetadataBehindTheLastRowAndAheadOfTheFirstRead) {
  scripted::Script& script = scripted::newScript();
  const pointcloudTest::ExpectedRow& last = pointcloudTest::expectedRows().back();
  script.columns[last.attribute] = nullptr;
  script.blocks = {2};
  Nimbra::Grid grid;
  testing::internal::CaptureStderr();
  EXPECT_EQ(load(grid, "shots.sodx"), "Error: Key not found");
  testing::internal::GetCapturedStderr();
  const auto placeOf = [&script](const std::string& call) {
    return std::find(script.calls.begin(), script.calls.end(), call) - script.calls.begin();
  };
  EXPECT_EQ(placeOf("metaData() const"),
            placeOf("bind(" + last.attribute + "," + std::to_string(last.dataType) + ",0)") + 1);
  EXPECT_TRUE(script.callsThatBegin("next(").empty());
  EXPECT_TRUE(field(grid, last.field));
}

TEST(ShotLoad, PreparesTheGridAndBindsItsColumnsAsAPointCloudDoes) {
  std::vector<Texts> bound;
  for (const char* path : {"a.rdbx", "a.sodx"}) {
    scripted::Script& script = scripted::newScript();
    script.columns = {
        {"riegl.class", nullptr}, {"riegl.echo_count", nullptr}, {"riegl.shot_origin", nullptr}};
    Nimbra::Grid grid;
    testing::internal::CaptureStderr();
    load(grid, path);
    testing::internal::GetCapturedStderr();
    bound.push_back(script.callsThatBegin("bind("));
    EXPECT_EQ(support::representationNames(grid), (Texts{scanner, chart})) << path;
  }
  EXPECT_EQ(bound, std::vector<Texts>(2, {"bind(riegl.shot_origin,10,0)", "bind(riegl.echo_count,3,0)"}));
}

TEST(PointCloudLoad, OfTwoTimeColumnsEndsAfterTheFirstReadWithoutData) {
  scripted::Script& script = scripted::newScript();
  script.columns["riegl.timestamp"] = nullptr;
  script.columns["riegl.shot_timestamp_hr"] = nullptr;
  script.blocks = {2};
  Nimbra::Grid grid;
  EXPECT_EQ(load(grid), "rdbx2Z4: Error both fields for GPSTime are set. Need to check this....");
  EXPECT_EQ(script.callsThatBegin("next(").size(), 1U);
  const auto positions = field(grid, "Positions");
  EXPECT_TRUE(positions->fragments().empty());
  EXPECT_EQ(positions->fragmentIDCollection()->fragments().size(), 1U);
  EXPECT_TRUE(field(grid, "ShotTimeStamp")->fragments().empty());
}

struct Kind {
  std::string path;
  bool readsWaveforms;

  friend void PrintTo(const Kind& test, std::ostream* stream) {
    *stream << testing::PrintToString(test.path);
  }
};

class Extension : public testing::TestWithParam<Kind> {};

TEST_P(Extension, GoesToTheClientInAnUnchangedPath) {
  scripted::newScript();
  Nimbra::Grid grid;
  testing::internal::CaptureStderr();
  load(grid, GetParam().path);
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(scripted::script().callsThatBegin("open("), Texts{"open(" + GetParam().path + ")"});
}

TEST_P(Extension, DecidesAloneAboutTheWaveformAttributes) {
  scripted::newScript();
  Nimbra::Grid grid;
  std::string result;
  testing::internal::CaptureStderr();
  result = load(grid, GetParam().path);
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(result, GetParam().readsWaveforms ? "Error: Key not found" : "");
  EXPECT_EQ(scripted::script().callsThatBegin("metaData() const").empty(), !GetParam().readsWaveforms);
}

INSTANTIATE_TEST_SUITE_P(OfThePath, Extension,
                         testing::Values(Kind{"a.sodx", true}, Kind{"dir.x/a.sodx", true},
                                         Kind{"a.SODX", false}, Kind{"a.Sodx", false}, Kind{"a.rdbx", false},
                                         Kind{"a", false}, Kind{"a.rdbx.bak", false},
                                         Kind{"a.sodx.rdbx", false}, Kind{".sodx", false},
                                         Kind{"a.sodx/", false}, Kind{"./a//../b.rdbx", false},
                                         Kind{"", false}));

/// Time stamps that lie on one day in the first two blocks and on two in the third.
void givenThirdBlockOnTwoDays() {
  scripted::Script& script = scripted::newScript();
  script.columns["riegl.timestamp"] = [](void* buffer, unsigned int, std::uint64_t first) {
    auto* const stamps = static_cast<double*>(buffer);
    stamps[0] = first == 4 ? 86390.0 : 10.0;
    stamps[1] = first == 4 ? 86410.0 : 20.0;
  };
  script.columns["riegl.amplitude"] = nullptr;
  script.metadata["riegl.time_base"] = utcTuesday;
  script.blocks = {2, 2, 2, 2};
}

TEST(PointCloudLoad, WhoseRebasingFailsInTheThirdBlockHasThatBlockInAllFields) {
  givenThirdBlockOnTwoDays();
  Nimbra::Grid grid;
  EXPECT_EQ(load(grid), "baseRDB2Nimbra:: Input file spans two days! Not implemented so far.");
  const Texts three{"Fragment_0", "Fragment_1", "Fragment_2"};
  EXPECT_EQ(support::fragmentNames(field(grid, "Positions")), three);
  EXPECT_EQ(support::fragmentNames(field(grid, "GPSTime")), three);
  EXPECT_EQ(support::fragmentNames(field(grid, "Amplitude")), three);
  EXPECT_EQ(support::values<double>(field(grid, "GPSTime"), "Fragment_2"),
            (std::vector<double>{86390, 86410}));
  EXPECT_EQ(support::values<double>(field(grid, "GPSTime"), "Fragment_1"),
            (std::vector<double>{172810, 172820}));
  EXPECT_EQ(support::attributeNames(field(grid, "GPSTime")->attributes()), Texts{"LeapSecondsAdded?"});
}

TEST(PointCloudLoad, WhoseRebasingFailsBindsNothingAnymore) {
  givenThirdBlockOnTwoDays();
  Nimbra::Grid grid;
  load(grid);
  EXPECT_EQ(scripted::script().callsThatBegin("next(").size(), 3U);
  EXPECT_EQ(scripted::script().callsThatBegin("bind(riegl.timestamp").size(), 3U);
}

TEST(PointCloudLoad, GivesItsFieldsANewAgeWithEveryAttribute) {
  scripted::Script& script = scripted::newScript();
  script.columns["riegl.timestamp"] = nullptr;
  script.columns["riegl.amplitude"] = nullptr;
  script.blocks = {1};
  Nimbra::Grid grid;
  ASSERT_EQ(load(grid), "");
  EXPECT_GT(field(grid, "GPSTime")->lastChange(), 0U);
  EXPECT_EQ(field(grid, "Amplitude")->lastChange(), 0U);
}

} // namespace
