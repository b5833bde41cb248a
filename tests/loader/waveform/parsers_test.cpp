// SPDX-License-Identifier: BSD-3-Clause
// The two parsers: the result for each kind of element, and the text for each fault.
#include "loader/waveform/parsers.h"

#include "tests/loader/waveform/scan_items.h"
#include "tests/support/output_log.h"

#include <QJsonDocument>
#include <QJsonParseError>
#include <algorithm>
#include <cstddef>
#include <gmock/gmock.h>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

namespace {

using Table = Torvel::StrongPtr<Torvel::Chunk<float>, Torvel::ChunkBase>;
using Channels = Riegl::ExponentialDecompositionMap;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;

std::string tableItem(const std::string& elements) {
  return R"({"ampl_unit": 1, "pointcloud": {"other": 1, "refltab": [)" + elements + "]}}";
}

struct ElementsCase {
  std::string name;
  std::string elements;
  std::vector<float> table;

  friend void PrintTo(const ElementsCase& test, std::ostream* stream) { *stream << test.name; }
};

template <class Case>
std::string caseName(const testing::TestParamInfo<Case>& test) {
  return test.param.name;
}

class ReflectanceTable : public testing::TestWithParam<ElementsCase> {};

TEST_P(ReflectanceTable, HoldsTheNumbersInOrder) {
  const support::OutputLog log;
  Table table;
  EXPECT_TRUE(Riegl::parse_reflectance_table(tableItem(GetParam().elements), table));
  ASSERT_TRUE(table);
  EXPECT_EQ(table->values(), GetParam().table);
  EXPECT_THAT(log.said(), IsEmpty());
}

constexpr float infinite = std::numeric_limits<float>::infinity();
INSTANTIATE_TEST_SUITE_P(
    Parser, ReflectanceTable,
    testing::Values(
        ElementsCase{"NumbersAndTexts", R"(1.5, "2.5", null, 3.5)", {1.5F, 2.5F, 3.5F, 0}},
        ElementsCase{"Empty", "", {}},
        ElementsCase{"NarrowedToFloat", R"(0.1, "0.1", 1e300, -1e300)", {0.1F, 0.1F, infinite, -infinite}},
        ElementsCase{"UnreadableTextTakesAPlace", R"("x", 1, "", 2)", {0, 1, 0, 2}},
        ElementsCase{"OtherKindsLeaveZerosAtTheEnd", R"(null, true, [7], {"a": 7}, 5)", {5, 0, 0, 0, 0}},
        ElementsCase{"NothingButFaults", "null, false", {0, 0}}),
    caseName<ElementsCase>);

struct FaultCase {
  std::string name;
  std::string json;
  std::string line;

  friend void PrintTo(const FaultCase& test, std::ostream* stream) { *stream << test.name; }
};

class ReflectanceFault : public testing::TestWithParam<FaultCase> {};

TEST_P(ReflectanceFault, IsNamedOnTheConsoleAndLeavesTheTable) {
  const support::OutputLog log;
  Table table(new Torvel::Chunk<float>(5));
  const Torvel::Chunk<float>* const earlier = table.get();
  EXPECT_FALSE(Riegl::parse_reflectance_table(GetParam().json, table));
  EXPECT_EQ(table.get(), earlier);
  EXPECT_THAT(log.said(), ElementsAre("console|[parse_reflectance_table] " + GetParam().line));
}

INSTANTIATE_TEST_SUITE_P(
    Parser, ReflectanceFault,
    testing::Values(
        FaultCase{"EmptyText", "", "Invalid JSON format"},
        FaultCase{"ArrayDocument", R"([{"pointcloud": {"refltab": [1]}}])", "Invalid JSON format"},
        FaultCase{"Malformed", R"({"pointcloud": {"refltab": [1]})", "Invalid JSON format"},
        FaultCase{"ZeroByteBehind", std::string(R"({"pointcloud": {"refltab": [1]}})") + '\0',
                  "Invalid JSON format"},
        FaultCase{"NoPointcloud", R"({"a": {"pointcloud": {"refltab": [1]}}})",
                  "No 'pointcloud' found in JSON"},
        FaultCase{"NoTable", R"({"pointcloud": {}, "refltab": [1]})", "No 'refltab' found in pointcloud"},
        FaultCase{"PointcloudIsANumber", R"({"pointcloud": 1})", "No 'refltab' found in pointcloud"},
        FaultCase{"PointcloudIsNull", R"({"pointcloud": null})", "No 'refltab' found in pointcloud"},
        FaultCase{"PointcloudIsAnArray", R"({"pointcloud": [{"refltab": [1]}]})",
                  "No 'refltab' found in pointcloud"}),
    caseName<FaultCase>);

TEST(ReflectanceTableOfAnotherKind, IsAnEmptyTable) {
  for (const char* const value : {"null", "7", "\"1\"", "{\"a\": 1}", "true"}) {
    Table table;
    EXPECT_TRUE(
        Riegl::parse_reflectance_table(R"({"pointcloud": {"refltab": )" + std::string(value) + "}}", table));
    ASSERT_TRUE(table);
    EXPECT_TRUE(table->empty());
  }
}

TEST(SecondReflectanceTable, ReleasesTheFirst) {
  Table table;
  Riegl::parse_reflectance_table(tableItem("1, 2"), table);
  const Torvel::WeakPtr<Torvel::Chunk<float>, Torvel::ChunkBase> first = table;
  Riegl::parse_reflectance_table(tableItem("3"), table);
  EXPECT_FALSE(first);
  EXPECT_THAT(table->values(), ElementsAre(3));
}

TEST(LongReflectanceTable, PassesWith64000Elements) {
  const support::OutputLog log;
  Table table;
  EXPECT_TRUE(Riegl::parse_reflectance_table(tableItem(support::repeated(64000, "2")), table));
  EXPECT_EQ(table->values(), std::vector<float>(64000, 2));
  EXPECT_THAT(log.said(), IsEmpty());
}

TEST(LongReflectanceTable, WarnsWithOneMoreAndStaysComplete) {
  const support::OutputLog log;
  Table table;
  EXPECT_FALSE(Riegl::parse_reflectance_table(tableItem(support::repeated(64001, "2")), table));
  EXPECT_EQ(table->values(), std::vector<float>(64001, 2));
  EXPECT_THAT(log.said(),
              ElementsAre("console|[parse_reflectance_table] Warning: refl_table exceeds 64k entries"));
}

TEST(LongReflectanceTable, IsMeasuredBySizeAndNotByNumbers) {
  Table table;
  EXPECT_FALSE(Riegl::parse_reflectance_table(tableItem(support::repeated(64001, "null")), table));
  EXPECT_EQ(table->values(), std::vector<float>(64001, 0));
}

TEST(Decomposition, HoldsAllOfAChannel) {
  Channels channels;
  EXPECT_TRUE(Riegl::parse_exponential_decomposition(
      R"({"1": {"a_lin": 0.5, "delay": 1e-9, "parameter": {"A": [1, 2], "B": [3, 4], "gamma": [-5, 6],
          "omega": [7, 8e9]}, "scale": 2}})",
      channels));
  const Riegl::ExponentialDecomposition& channel = channels.at("1");
  EXPECT_THAT((std::vector{channel.A, channel.B, channel.gamma, channel.omega}),
              ElementsAre(ElementsAre(1, 2), ElementsAre(3, 4), ElementsAre(-5, 6), ElementsAre(7, 8e9)));
  EXPECT_THAT((std::vector{channel.delay, channel.scale, channel.a_lin}), ElementsAre(1e-9, 2, 0.5));
}

TEST(Decomposition, HasItsMembersInOrder) {
  const Riegl::ExponentialDecomposition c;
  const std::vector<const void*> members = {&c.A, &c.B, &c.gamma, &c.omega, &c.delay, &c.scale, &c.a_lin};
  EXPECT_TRUE(std::is_sorted(members.begin(), members.end()));
}

TEST(Decomposition, KeepsChannelsInTheOrderOfTheirBytes) {
  Channels channels;
  EXPECT_TRUE(
      Riegl::parse_exponential_decomposition(R"({"2": {}, "10": {}, "1": {}, "ä": {}, "": {}})", channels));
  EXPECT_THAT(channels, ElementsAre(Key(""), Key("1"), Key("10"), Key("2"), Key("ä")));
}

TEST(Decomposition, ReadsWhatIsNoNumberAsZero) {
  Channels channels;
  EXPECT_TRUE(Riegl::parse_exponential_decomposition(
      R"({"1": {"delay": "1", "scale": null, "parameter": {"A": [1, "2", null, 4], "B": 7, "gamma": {"a": 1}}}})",
      channels));
  const Riegl::ExponentialDecomposition& channel = channels.at("1");
  EXPECT_THAT(channel.A, ElementsAre(1, 0, 0, 4));
  EXPECT_TRUE(channel.B.empty() && channel.gamma.empty() && channel.omega.empty());
  EXPECT_THAT((std::vector{channel.delay, channel.scale, channel.a_lin}), ElementsAre(0, 0, 0));
}

TEST(Decomposition, TakesAChannelThatIsNoObjectAsAnEmptyOne) {
  const support::OutputLog log;
  for (const char* const value : {"null", "7", "\"x\"", "[1]", "{}", "{\"parameter\": 7}"}) {
    Channels channels;
    EXPECT_TRUE(Riegl::parse_exponential_decomposition("{\"1\": " + std::string(value) + "}", channels));
    EXPECT_TRUE(channels.at("1").A.empty() && channels.at("1").delay == 0);
  }
  EXPECT_THAT(log.said(), IsEmpty());
}

TEST(Decomposition, OverwritesTheChannelsOfThatNameOnly) {
  Channels channels;
  channels["1"] = {{9, 9}, {9}, {9}, {9}, 9, 9, 9};
  channels["7"].A = {3};
  EXPECT_TRUE(Riegl::parse_exponential_decomposition(R"({"1": {"parameter": {"A": [1]}}})", channels));
  EXPECT_THAT(channels.at("1").A, ElementsAre(1));
  EXPECT_TRUE(channels.at("1").B.empty() && channels.at("1").delay == 0 && channels.at("1").a_lin == 0);
  EXPECT_THAT(channels.at("7").A, ElementsAre(3));
}

TEST(Decomposition, OfAnEmptyObjectIsNoFault) {
  Channels channels;
  EXPECT_TRUE(Riegl::parse_exponential_decomposition("{}", channels));
  EXPECT_THAT(channels, IsEmpty());
}

class DecompositionFault : public testing::TestWithParam<std::string> {};

TEST_P(DecompositionFault, IsReportedWithTheParsersWords) {
  const support::OutputLog log;
  QJsonParseError error;
  QJsonDocument::fromJson(QByteArray::fromStdString(GetParam()), &error);
  Channels channels;
  EXPECT_FALSE(Riegl::parse_exponential_decomposition(GetParam(), channels));
  EXPECT_THAT(channels, IsEmpty());
  EXPECT_THAT(log.said(), ElementsAre("cerr|JSON parse error: " + error.errorString().toStdString() + "\n"));
}

INSTANTIATE_TEST_SUITE_P(Parser, DecompositionFault,
                         testing::Values("", "{", "{\"1\": {}", "{\"1\": {},}", "[]", "[{\"1\": {}}]", "7",
                                         std::string("{}\0", 3), std::string(1000000, '[')));

TEST(DecompositionThatIsAnArray, IsReportedWithTheWordsForNoError) {
  const support::OutputLog log;
  Channels channels;
  EXPECT_FALSE(Riegl::parse_exponential_decomposition("[]", channels));
  EXPECT_THAT(log.said(), ElementsAre("cerr|JSON parse error: no error occurred\n"));
}

TEST(LargeDecomposition, IsReadWhole) {
  Channels channels;
  const std::string numbers = support::repeated(300000, "1.25");
  EXPECT_TRUE(Riegl::parse_exponential_decomposition(
      R"({"1": {"parameter": {"A": [)" + numbers + R"(], "omega": [)" + numbers + "]}}}", channels));
  EXPECT_EQ(channels.at("1").A, std::vector<double>(300000, 1.25));
  EXPECT_EQ(channels.at("1").omega.size(), 300000U);
}

} // namespace
