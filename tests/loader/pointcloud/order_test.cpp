// SPDX-License-Identifier: BSD-3-Clause
// The order of client calls and of side effects on the grid in a point-cloud load.
#include "tests/loader/pointcloud/expected_rows.h"
#include "tests/loader/pointcloud/scripted_scan.h"

#include <algorithm>
#include <ostream>

namespace {

using support::chart;
using support::field;
using support::scanner;
using Texts = std::vector<std::string>;

constexpr const char* utcTuesday = R"({"epoch":"2015-10-27T00:00:00+00:00","source":"GNSS","system":"UTC"})";

class PointCloudLoad : public pointcloudTest::ScriptedScan {};

/// Calls of the client, without the questions to the catalogue for each row.
Texts callsWithoutCatalogue() {
  Texts calls;
  for (const std::string& call : scripted::script().calls) {
    if (call != "pointAttribute()" && call.rfind("exists(", 0) != 0) {
      calls.push_back(call);
    }
  }
  return calls;
}

TEST_F(PointCloudLoad, AsksTheClientInThisOrder) {
  givenColumns({"riegl.xyz"});
  script.metadata["riegl.time_base"] = utcTuesday;
  script.blocks = {5000000, 1};
  ASSERT_EQ(load(), "");
  EXPECT_EQ(callsWithoutCatalogue(),
            (Texts{"Context(,)", "Pointcloud()", "OpenSettings()", "open(folder/scan.rdbx)", "metaData()",
                   "MetaData::exists(riegl.time_base)", "MetaData::get(riegl.time_base,)", "select()",
                   "bind(riegl.xyz,10,0)", "next(5000000)", "bind(riegl.xyz,10,0)", "next(5000000)",
                   "bind(riegl.xyz,10,0)", "next(5000000)", "~QuerySelect", "~OpenSettings", "~Pointcloud",
                   "~Context"}));
}

TEST_F(PointCloudLoad, DoesNotReadATimeBaseThatIsAbsent) {
  ASSERT_EQ(load(), "");
  EXPECT_EQ(script.callsThatBegin("MetaData::get").size(), 0U);
}

TEST_F(PointCloudLoad, BindsFreshMemoryForEveryBlockAndPublishesItWithoutACopy) {
  std::vector<void*> written;
  script.columns["riegl.amplitude"] = [&written](void* buffer, unsigned int, std::uint64_t) {
    written.push_back(buffer);
  };
  script.blocks = {4, 3};
  ASSERT_EQ(load(), "");
  const auto amplitude = field(grid, "Amplitude");
  ASSERT_EQ(written.size(), 2U);
  EXPECT_EQ(amplitude->array("Fragment_0")->rawData(), written[0]);
  EXPECT_EQ(amplitude->array("Fragment_1")->rawData(), written[1]);
}

TEST_F(PointCloudLoad, LeavesTheArrayAsTheOnlyOwnerOfAChunk) {
  givenColumns({"riegl.amplitude"});
  script.blocks = {4};
  ASSERT_EQ(load(), "");
  const auto chunk = field(grid, "Amplitude")->array("Fragment_0")->chunkBase();
  EXPECT_EQ(chunk.counts()->strong(), 2); // held by the array and by this test
}

TEST_F(PointCloudLoad, MakesTheScannerRepresentationFirstAndSharesOneCollectionOfFragments) {
  ASSERT_EQ(load(), "");
  EXPECT_EQ(support::representationNames(grid), (Texts{scanner, chart}));
  const auto inChart = field(grid, "Positions");
  const auto inScanner = field(grid, "Positions", scanner);
  EXPECT_NE(inChart.get(), inScanner.get());
  EXPECT_EQ(inChart->fragmentIDCollection().get(), inScanner->fragmentIDCollection().get());
}

TEST_F(PointCloudLoad, MakesRepresentationsOfThreeDimensions) {
  ASSERT_EQ(load(), "");
  for (const auto& representation : grid.representations()) {
    EXPECT_EQ(representation->dimensions(), 3) << representation->name();
  }
}

TEST_F(PointCloudLoad, SharesOneFragmentIdentityAmongTheFieldsOfBothRepresentations) {
  givenColumns({"riegl.xyz", "riegl.timestamp", "riegl.xyz_socs", "riegl.amplitude"});
  script.blocks = {1};
  ASSERT_EQ(load(), "");
  const auto identity = field(grid, "Positions")->fragments().front().identity;
  EXPECT_EQ(field(grid, "Positions", scanner)->fragments().front().identity.get(), identity.get());
  EXPECT_EQ(field(grid, "GPSTime")->fragments().front().identity.get(), identity.get());
  EXPECT_EQ(field(grid, "Amplitude")->fragments().front().identity.get(), identity.get());
}

TEST_F(PointCloudLoad, OfNoRecordsMakesFieldsWithoutFragments) {
  givenColumns({"riegl.xyz", "riegl.timestamp"});
  ASSERT_EQ(load(), "");
  EXPECT_EQ(support::fieldNames(grid), (Texts{"Positions", "GPSTime"}));
  EXPECT_TRUE(field(grid, "Positions")->fragments().empty());
  EXPECT_TRUE(field(grid, "Positions")->fragmentIDCollection()->fragments().empty());
  EXPECT_TRUE(field(grid, "GPSTime")->attributes().empty());
}

TEST_F(PointCloudLoad, SecondOneIntoTheSameGridStartsAgainAtFragmentZero) {
  givenColumns({"riegl.amplitude"});
  for (const unsigned int count : {3U, 2U}) {
    script.blocks = {count};
    ASSERT_EQ(load(), "");
  }
  EXPECT_EQ(support::fragmentNames(field(grid, "Amplitude")), Texts{"Fragment_0"});
  EXPECT_EQ(field(grid, "Amplitude")->array("Fragment_0")->elementCount(), 2U);
}

TEST_F(PointCloudLoad, SecondOneIntoTheSameGridMeetsTheFieldsOfTheFirst) {
  givenColumns({"riegl.amplitude"});
  script.blocks = {3, 3};
  ASSERT_EQ(load(), "");
  const auto amplitude = field(grid, "Amplitude");
  script.blocks = {2};
  ASSERT_EQ(load(), "");
  EXPECT_EQ(field(grid, "Amplitude").get(), amplitude.get());
  EXPECT_EQ(support::fragmentNames(field(grid, "Amplitude")), (Texts{"Fragment_0", "Fragment_1"}));
  EXPECT_EQ(support::representationNames(grid), (Texts{scanner, chart}));
  EXPECT_EQ(field(grid, "Positions")->fragmentIDCollection().get(),
            field(grid, "Positions", scanner)->fragmentIDCollection().get());
}

TEST_F(PointCloudLoad, SecondOneIntoTheSameGridPutsANewFieldOfPositionsIntoTheScannersSystem) {
  scripted::newScript();
  ASSERT_EQ(load(), "");
  const auto first = field(grid, "Positions", scanner);
  ASSERT_EQ(load(), "");
  EXPECT_NE(field(grid, "Positions", scanner).get(), first.get());
}

TEST_F(PointCloudLoad, SecondOneIntoTheSameGridDropsTheScannersPositionsOfTheFirst) {
  givenColumns({"riegl.xyz_socs"});
  script.blocks = {3, 3};
  ASSERT_EQ(load(), "");
  script.blocks = {2};
  ASSERT_EQ(load(), "");
  EXPECT_EQ(support::fragmentNames(field(grid, "Positions", scanner)), Texts{"Fragment_0"});
}

TEST_F(PointCloudLoad, DoesNotReadItsReservedNumber) {
  givenColumns({"riegl.class"});
  script.blocks = {2};
  std::vector<Texts> calls;
  for (const int reserved : {0, 1, -1}) {
    script.calls.clear();
    Nimbra::Grid fresh;
    EXPECT_EQ(Riegl::rdbx2Z4(path, fresh, reserved, false, nullptr), "");
    calls.push_back(script.calls);
  }
  EXPECT_EQ(calls, std::vector<Texts>(3, calls[0]));
}

TEST_F(PointCloudLoad, LeavesWhatTheGridHeldBefore) {
  Nimbra::Representation& own = grid.makeCartesianRepresentation(3, "Own", 0);
  const Nimbra::Field::Pointer marks = own.makeField(own.makeFieldID("Marks"), nullptr, nullptr);
  ASSERT_EQ(load(), "");
  EXPECT_EQ(support::representationNames(grid), (Texts{"Own", scanner, chart}));
  EXPECT_EQ(field(grid, "Marks", "Own").get(), marks.get());
}

TEST_F(PointCloudLoad, CountsItsFragmentsInPlainDecimal) {
  script.blocks.assign(11, 1);
  ASSERT_EQ(load(), "");
  const Texts names = support::fragmentNames(field(grid, "Positions"));
  ASSERT_EQ(names.size(), 11U);
  EXPECT_EQ(names[9], "Fragment_9");
  EXPECT_EQ(names[10], "Fragment_10");
}

TEST_F(PointCloudLoad, ReleasesItsBuffersAheadOfTheQuery) {
  givenColumns({"riegl.amplitude"});
  std::map<std::string, std::int64_t> bytesAtTheEndOf;
  script.atEnd = [&bytesAtTheEndOf](const std::string& object) {
    bytesAtTheEndOf[object] = Torvel::ChunkBase::TotalMemsize;
  };
  const std::int64_t bytesBefore = Torvel::ChunkBase::TotalMemsize;
  ASSERT_EQ(load(), "");
  EXPECT_EQ(bytesAtTheEndOf.at("QuerySelect"), bytesBefore);
}

class ShotLoad : public pointcloudTest::ScriptedScan {
 protected:
  std::ptrdiff_t placeOf(const std::string& call) const {
    return std::find(script.calls.begin(), script.calls.end(), call) - script.calls.begin();
  }
};

TEST_F(ShotLoad, ReadsItsWaveformMetadataBehindTheLastRowAndAheadOfTheFirstRead) {
  const pointcloudTest::ExpectedRow& last = pointcloudTest::expectedRows().back();
  givenColumns({last.attribute.c_str()});
  script.blocks = {2};
  path = "shots.sodx";
  EXPECT_EQ(loadQuietly(), "Error: Key not found");
  EXPECT_EQ(placeOf("metaData() const"),
            placeOf("bind(" + last.attribute + "," + std::to_string(last.dataType) + ",0)") + 1);
  EXPECT_TRUE(script.callsThatBegin("next(").empty());
  EXPECT_TRUE(field(grid, last.field));
}

TEST_F(ShotLoad, PreparesTheGridAndBindsItsColumnsAsAPointCloudDoes) {
  givenColumns({"riegl.class", "riegl.echo_count", "riegl.shot_origin"});
  path = "a.sodx";
  loadQuietly();
  EXPECT_EQ(script.callsThatBegin("bind("),
            (Texts{"bind(riegl.shot_origin,10,0)", "bind(riegl.echo_count,3,0)"}));
  EXPECT_EQ(support::representationNames(grid), (Texts{scanner, chart}));
}

TEST_F(PointCloudLoad, OfTwoTimeColumnsEndsAfterTheFirstReadWithoutData) {
  givenColumns({"riegl.timestamp", "riegl.shot_timestamp_hr"});
  script.blocks = {2};
  EXPECT_EQ(load(), "rdbx2Z4: Error both fields for GPSTime are set. Need to check this....");
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

class Extension : public pointcloudTest::ScriptedScan, public testing::WithParamInterface<Kind> {
 protected:
  Extension() { path = GetParam().path; }
};

TEST_P(Extension, GoesToTheClientInAnUnchangedPath) {
  loadQuietly();
  EXPECT_EQ(script.callsThatBegin("open("), Texts{"open(" + path + ")"});
}

TEST_P(Extension, DecidesAloneAboutTheWaveformAttributes) {
  EXPECT_EQ(loadQuietly(), GetParam().readsWaveforms ? "Error: Key not found" : "");
  EXPECT_EQ(script.callsThatBegin("metaData() const").empty(), !GetParam().readsWaveforms);
}

INSTANTIATE_TEST_SUITE_P(OfThePath, Extension,
                         testing::Values(Kind{"a.sodx", true}, Kind{"dir.x/a.sodx", true},
                                         Kind{"a.SODX", false}, Kind{"a.Sodx", false}, Kind{"a.rdbx", false},
                                         Kind{"a", false}, Kind{"a.rdbx.bak", false},
                                         Kind{"a.sodx.rdbx", false}, Kind{".sodx", false},
                                         Kind{"a.sodx/", false}, Kind{"./a//../b.rdbx", false},
                                         Kind{"", false}));

/// Time stamps that lie on one day in the first two blocks and on two days in the third.
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

TEST_F(PointCloudLoad, WhoseRebasingFailsInTheThirdBlockHasThatBlockInAllFields) {
  givenThirdBlockOnTwoDays();
  EXPECT_EQ(load(), "baseRDB2Nimbra:: Input file spans two days! Not implemented so far.");
  for (const char* const name : {"Positions", "GPSTime", "Amplitude"}) {
    EXPECT_EQ(support::fragmentNames(field(grid, name)), (Texts{"Fragment_0", "Fragment_1", "Fragment_2"}));
  }
  EXPECT_EQ(support::attributeNames(field(grid, "GPSTime")->attributes()), Texts{"LeapSecondsAdded?"});
}

TEST_F(PointCloudLoad, WhoseRebasingFailsLeavesTheStampsOfThatBlockAsTheyWere) {
  givenThirdBlockOnTwoDays();
  load();
  EXPECT_EQ(support::values<double>(field(grid, "GPSTime"), "Fragment_2"),
            (std::vector<double>{86390, 86410}));
  EXPECT_EQ(support::values<double>(field(grid, "GPSTime"), "Fragment_1"),
            (std::vector<double>{172810, 172820}));
}

TEST_F(PointCloudLoad, WhoseRebasingFailsBindsNothingAnymore) {
  givenThirdBlockOnTwoDays();
  load();
  EXPECT_EQ(script.callsThatBegin("next(").size(), 3U);
  EXPECT_EQ(script.callsThatBegin("bind(riegl.timestamp").size(), 3U);
}

TEST_F(PointCloudLoad, GivesItsFieldsANewAgeWithEveryAttribute) {
  givenColumns({"riegl.timestamp", "riegl.amplitude"});
  script.blocks = {1};
  ASSERT_EQ(load(), "");
  EXPECT_GT(field(grid, "GPSTime")->lastChange(), 0U);
  EXPECT_EQ(field(grid, "Amplitude")->lastChange(), 0U);
}

} // namespace
