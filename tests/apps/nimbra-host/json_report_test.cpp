// SPDX-License-Identifier: BSD-3-Clause
// The JSON object, byte for byte.
#include "apps/nimbra-host/json_report.h"

#include "tests/apps/nimbra-host/hand_made_grid.h"
#include "tests/support/temp_dir.h"

#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>

namespace {

using hosttest::HandMade;
using nimbrahost::ShownValues;
using testing::HasSubstr;

std::string jsonOf(const HandMade& load, std::uint64_t most = ShownValues::all,
                   const nimbrahost::PictureOutcome* picture = nullptr) {
  std::ostringstream stream;
  nimbrahost::OutputBuffer output(stream);
  EXPECT_TRUE(writeJsonReport(output, load.request, load.outcome, {most}, picture));
  EXPECT_TRUE(nlohmann::json::accept(stream.str())) << stream.str();
  return stream.str();
}

/// The list of values of a column with these elements.
template <class T>
std::string valuesOf(const std::vector<T>& elements, std::uint64_t most = ShownValues::all) {
  HandMade load;
  const std::string text = jsonOf(load.column("Column", elements), most);
  const std::size_t start = text.find("\"values\": ") + 10;
  return text.substr(start, text.find('}', start) - start);
}

template <class T>
std::string typeOf() {
  HandMade load;
  const std::string text = jsonOf(load.column("Column", std::vector<T>(1)), 0);
  const std::size_t start = text.find("\"type\": ") + 8;
  return text.substr(start, text.find(',', start) - start);
}

TEST(JsonReport, EmptyGridHasEveryKey) {
  EXPECT_EQ(jsonOf(HandMade()), "{\"file\": \"scan.rdbx\",\n \"result\": \"\",\n \"exception\": null,\n"
                                " \"console\": [],\n \"attributes\": [],\n \"representations\": []}\n");
}

TEST(JsonReport, FieldWithFragmentsAndAttributesIsWrittenInOrder) {
  HandMade load;
  load.column<double>("GPSTime", {1.5, 2}, "Fragment_0").column<double>("GPSTime", {3}, "Fragment_1");
  load.fieldAttribute<unsigned char>("GPSTime", "LeapSecondsAdded?", {1});
  EXPECT_EQ(jsonOf(load),
            "{\"file\": \"scan.rdbx\",\n \"result\": \"\",\n \"exception\": null,\n \"console\": [],\n"
            " \"attributes\": [],\n \"representations\": [\n    {\"name\": \"Chart\",\n     \"fields\": [\n"
            "      {\"name\": \"GPSTime\", \"type\": \"double\",\n"
            "       \"attributes\": [{\"name\": \"LeapSecondsAdded?\", \"type\": \"unsigned char\","
            " \"values\": [1]}],\n"
            "       \"fragments\": [{\"name\": \"Fragment_0\", \"count\": 2, \"values\": [1.5,2]},\n"
            "         {\"name\": \"Fragment_1\", \"count\": 1, \"values\": [3]}]}]}]}\n");
}

TEST(JsonReport, ElementTypesHaveTheirNames) {
  EXPECT_EQ(typeOf<double>(), "\"double\"");
  EXPECT_EQ(typeOf<float>(), "\"float\"");
  EXPECT_EQ(typeOf<short>(), "\"short\"");
  EXPECT_EQ(typeOf<unsigned short>(), "\"unsigned short\"");
  EXPECT_EQ(typeOf<int>(), "\"int\"");
  EXPECT_EQ(typeOf<unsigned int>(), "\"unsigned int\"");
  EXPECT_EQ(typeOf<unsigned long long>(), "\"unsigned long long\"");
  EXPECT_EQ(typeOf<unsigned char>(), "\"unsigned char\"");
}

TEST(JsonReport, ComposedElementTypesHaveTheirNames) {
  EXPECT_EQ(typeOf<Quillon::PhysicalSpace::point>(), "\"point\"");
  EXPECT_EQ(typeOf<Quillon::PhysicalSpace::vector>(), "\"vector\"");
  EXPECT_EQ(typeOf<Quillon::ColourRGBA>(), "\"rgba\"");
}

TEST(JsonReport, NumbersAreTheShortestThatReadBack) {
  EXPECT_EQ(valuesOf<double>({0.1, 1, 1e300, 123456.789}), "[0.1,1,1e+300,123456.789]");
  EXPECT_EQ(valuesOf<float>({0.1F, 16777216.0F}), "[0.1,16777216]");
  EXPECT_EQ(valuesOf<unsigned long long>({18446744073709551615ULL}), "[18446744073709551615]");
  EXPECT_EQ(valuesOf<short>({-32768, 32767}), "[-32768,32767]");
  EXPECT_EQ(valuesOf<int>({-2147483647 - 1}), "[-2147483648]");
  EXPECT_EQ(valuesOf<unsigned int>({4294967295U}), "[4294967295]");
  EXPECT_EQ(valuesOf<unsigned short>({65535}), "[65535]");
  EXPECT_EQ(valuesOf<unsigned char>({0, 65, 255}), "[0,65,255]");
}

TEST(JsonReport, NumbersThatJsonLacksAreTexts) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double none = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(valuesOf<double>({none, -none, infinity, -infinity, -0.0, 0}),
            "[\"nan\",\"nan\",\"inf\",\"-inf\",-0.0,0]");
  EXPECT_EQ(valuesOf<float>({static_cast<float>(none), static_cast<float>(-infinity), -0.0F}),
            "[\"nan\",\"-inf\",-0.0]");
}

TEST(JsonReport, SeveralComponentsAreAList) {
  EXPECT_EQ(valuesOf<Quillon::PhysicalSpace::point>({{0, 0, 0}, {1, 2, 3.5}}), "[[0,0,0],[1,2,3.5]]");
  EXPECT_EQ(valuesOf<Quillon::PhysicalSpace::vector>({{-1, 0, 1e-7}}), "[[-1,0,1e-07]]");
  Quillon::ColourRGBA colour;
  std::fill(colour.begin(), colour.end(), static_cast<unsigned char>(255));
  EXPECT_EQ(valuesOf<Quillon::ColourRGBA>({colour}), "[[255,255,255,255]]");
}

TEST(JsonReport, AsManyValuesAsWantedAreShown) {
  EXPECT_EQ(valuesOf<int>({1, 2, 3}, 0), "[]");
  EXPECT_EQ(valuesOf<int>({1, 2, 3}, 2), "[1,2]");
  EXPECT_EQ(valuesOf<int>({1, 2, 3}, 4), "[1,2,3]");
}

TEST(JsonReport, AttributesShowAllValuesWhateverIsWanted) {
  HandMade load;
  load.gridAttribute<double>("LeverArm", {1, 2}).gridAttribute<std::string>("Name", {"a", ""});
  EXPECT_THAT(jsonOf(load, 0),
              HasSubstr("\"attributes\": [{\"name\": \"LeverArm\", \"type\": \"double\", \"values\": [1,2]}, "
                        "{\"name\": \"Name\", \"type\": \"string\", \"values\": [\"a\",\"\"]}],"));
}

TEST(JsonReport, AttributeSetAgainKeepsItsPlace) {
  HandMade load;
  load.gridAttribute<int>("first", {1}).gridAttribute<int>("second", {2}).gridAttribute<int>("first", {3});
  EXPECT_THAT(jsonOf(load), HasSubstr("[{\"name\": \"first\", \"type\": \"int\", \"values\": [3]}, "
                                      "{\"name\": \"second\""));
}

TEST(JsonReport, AttributeWithoutAChunkHasNoType) {
  HandMade load;
  load.outcome.grid->attributes().setAttribute("gone", nullptr);
  EXPECT_THAT(jsonOf(load), HasSubstr("{\"name\": \"gone\", \"type\": null, \"values\": []}"));
}

TEST(JsonReport, FieldWithoutAnArrayHasNoType) {
  HandMade load;
  load.field("Positions");
  EXPECT_THAT(jsonOf(load), HasSubstr("{\"name\": \"Positions\", \"type\": null,\n"
                                      "       \"attributes\": [],\n       \"fragments\": []}"));
}

TEST(JsonReport, ArrayShorterThanItsChunkShowsItsOwnElements) {
  HandMade load;
  const auto field = load.field("Cut");
  const Nimbra::MemBase::Pointer array(
      new Nimbra::MemArray<1, int>(hosttest::chunkWith<int>({1, 2, 3}), {2}, nullptr));
  field->setPersistentData(array, field->makeFragmentID("Fragment_0"), nullptr, "");
  EXPECT_THAT(jsonOf(load), HasSubstr("\"count\": 2, \"values\": [1,2]"));
}

TEST(JsonReport, ArrayOfSeveralRanksIsListedInStorageOrder) {
  HandMade load;
  const auto field = load.field("Raster");
  const Nimbra::MemBase::Pointer array(
      new Nimbra::MemArray<2, int>(hosttest::chunkWith<int>({1, 2, 3, 4}), {2, 2}, nullptr));
  field->setPersistentData(array, field->makeFragmentID("Fragment_0"), nullptr, "");
  EXPECT_THAT(jsonOf(load), HasSubstr("\"count\": 4, \"values\": [1,2,3,4]"));
}

TEST(JsonReport, FailuresAreReported) {
  HandMade load;
  load.outcome.result = "it \"broke\"";
  load.outcome.exception = nimbrahost::Raised{"std::invalid_argument", "stod"};
  load.outcome.console = {"one", " two\nlines "};
  EXPECT_THAT(jsonOf(load),
              HasSubstr("\"result\": \"it \\\"broke\\\"\",\n"
                        " \"exception\": {\"type\": \"std::invalid_argument\", \"what\": \"stod\"},\n"
                        " \"console\": [\"one\", \" two\\nlines \"],\n"));
}

TEST(JsonReport, BytesThatAreNoUtf8BecomeReplacements) {
  HandMade load;
  load.request.file = "a\xff.rdbx";
  load.outcome.console = {"\xc3"};
  load.column<int>("B\xe4r", {1}, "F\x80").gridAttribute<std::string>("\xf0\x9f", {"\xed\xa0\x80"});
  const auto parsed = nlohmann::json::parse(jsonOf(load));
  EXPECT_EQ(parsed["file"], "a\xef\xbf\xbd.rdbx");
  EXPECT_EQ(parsed["console"][0], "\xef\xbf\xbd");
  EXPECT_EQ(parsed["representations"][0]["fields"][0]["name"], "B\xef\xbf\xbdr");
}

TEST(JsonReport, RebaseErrorStandsThereWhenRebasingWasAskedFor) {
  HandMade load;
  EXPECT_EQ(jsonOf(load).find("rebaseError"), std::string::npos);
  load.outcome.rebaseError = "";
  EXPECT_THAT(jsonOf(load), HasSubstr(",\n \"rebaseError\": \"\"}\n"));
}

TEST(JsonReport, WaveformShowsItsFourCarriers) {
  HandMade load;
  load.outcome.waveform = nimbrahost::WaveformOutcome{.result = "r", .speak = "s\n", .error = "e"};
  load.outcome.waveform->pointGrid = load.outcome.grid;
  load.gridAttribute<int>("RDB_Segment", {0});
  EXPECT_THAT(
      jsonOf(load),
      HasSubstr(",\n \"waveform\": {\"result\": \"r\", \"speak\": \"s\\n\", \"error\": \"e\",\n"
                "  \"waveformGrid\": {\"attributes\": []},\n"
                "  \"pointGrid\": {\"attributes\": [{\"name\": \"RDB_Segment\", \"type\": \"int\","
                " \"values\": [0]}]},\n"
                "  \"waveformField\": {\"attributes\": []},\n  \"tRefField\": {\"attributes\": []}}}\n"));
}

TEST(JsonReport, PictureIsReported) {
  const nimbrahost::PictureOutcome picture{
      .file = "a.png", .pointCount = 3, .unitsPerPixel = 0.5, .error = ""};
  EXPECT_THAT(jsonOf(HandMade(), 0, &picture),
              HasSubstr("\"picture\": {\"file\": \"a.png\", \"points\": 3, \"unitsPerPixel\": 0.5, "
                        "\"error\": \"\"}}\n"));
}

TEST(JsonReport, StreamThatFailsIsNoticed) {
  HandMade load;
  load.column("Column", std::vector<int>(1000000, 7));
  std::ostringstream stream;
  stream.setstate(std::ios::badbit);
  nimbrahost::OutputBuffer output(stream);
  EXPECT_FALSE(writeJsonReport(output, load.request, load.outcome, {ShownValues::all}, nullptr));
}

/// Bit patterns of all kinds of doubles; the seed is fixed.
std::vector<double> variedNumbers(std::size_t count) {
  std::vector<double> numbers(count);
  std::uint64_t state = 88172645463325252ULL;
  for (double& number : numbers) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    std::memcpy(&number, &state, sizeof(number));
  }
  return numbers;
}

TEST(JsonReport, AMillionNumbersReadBackToTheirBits) {
  const support::TempDir directory;
  HandMade load;
  const auto numbers = variedNumbers(1000000);
  std::ofstream(directory.path("a.json")) << jsonOf(load.column("Column", numbers));
  std::ofstream(directory.path("a.bin"), std::ios::binary)
      .write(reinterpret_cast<const char*>(numbers.data()), static_cast<std::streamsize>(numbers.size() * 8));
  const std::string command = std::string("python3 " HOST_TEST_SOURCES "/compare_values.py ") +
                              directory.path("a.json") + " " + directory.path("a.bin");
  EXPECT_EQ(std::system(command.c_str()), 0);
}

} // namespace
