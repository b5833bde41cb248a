// SPDX-License-Identifier: BSD-3-Clause
// The report for people: its lines, their width, and the line of each failure on standard error.
#include "apps/nimbra-host/people_report.h"

#include "apps/nimbra-host/people_text.h"
#include "tests/apps/nimbra-host/hand_made_grid.h"

#include <gmock/gmock.h>
#include <limits>
#include <sstream>

namespace {

using hosttest::HandMade;
using nimbrahost::ShownValues;
using testing::HasSubstr;

std::string textOf(const HandMade& load, std::uint64_t most = 0) {
  std::ostringstream stream;
  nimbrahost::OutputBuffer output(stream);
  EXPECT_TRUE(writePeopleReport(output, load.request, load.outcome, {most}, nullptr));
  return stream.str();
}

std::size_t widestLine(const std::string& text) {
  std::istringstream lines(text);
  std::size_t widest = 0;
  for (std::string line; std::getline(lines, line);) {
    widest = std::max(widest, nimbrahost::characterCount(line));
  }
  return widest;
}

HandMade tinyLoad() {
  HandMade load;
  load.column<Quillon::PhysicalSpace::point>("Positions", {{0, -1.5, 3}, {1, 2, 3}});
  load.column<double>("GPSTime", {398765.123456789, 398766});
  load.fieldAttribute<unsigned char>("GPSTime", "LeapSecondsAdded?", {1});
  load.field("Amplitude");
  load.outcome.loadSeconds = 0.5;
  return load;
}

nimbrahost::WaveformOutcome readWaveform(const std::string& result) {
  nimbrahost::WaveformOutcome waveform{.result = result};
  waveform.waveformGrid = new Nimbra::Grid;
  waveform.pointGrid = new Nimbra::Grid;
  waveform.waveformField = new Nimbra::Field(nullptr);
  waveform.tRefField = new Nimbra::Field(nullptr);
  return waveform;
}

TEST(PeopleReport, TinyGridIsLaidOutInColumns) {
  EXPECT_EQ(
      textOf(tinyLoad()),
      "File      scan.rdbx\n"
      "Result    loaded\n"
      "Load      0.500 s, 2 records, 64 B on the grid, 128 B/s\n"
      "Console   no lines\n"
      "\n"
      "Chart: 3 fields\n"
      "  Field                       Type                      First         Last      Minimum      Maximum\n"
      "  Positions x                 point                         0            1            0            1\n"
      "            y                                            -1.5            2         -1.5            2\n"
      "            z                                               3            3            3            3\n"
      "  GPSTime                     double             398765.12346       398766 398765.12346       398766\n"
      "    @ LeapSecondsAdded?       unsigned char      1\n"
      "  Amplitude                   no data\n"
      "  1 fragment of Positions, GPSTime\n"
      "    Fragment_0                           2\n"
      "  0 fragments of Amplitude\n");
}

TEST(PeopleReport, WarningsAndGridAttributesAreShown) {
  HandMade load;
  load.outcome.console = {"one\ntwo", "three"};
  load.gridAttribute<Quillon::PhysicalSpace::vector>("LeverArm", {{1, 2, 3}, {4, 5, 6}});
  EXPECT_THAT(textOf(load), HasSubstr("Console   2 lines\n  one\n  two\n  three\n\nGrid: 1 attribute\n"
                                      "  @ LeverArm                  vector             1 2 3, 4 5 6\n"));
}

TEST(PeopleReport, LongContentsStayWithinThePage) {
  HandMade load;
  load.column<double>("ANameThatIsLongerThanTheColumnForNames", {-1.7976931348623157e308, 5e-324});
  load.column<unsigned long long>("ID", {18446744073709551615ULL});
  load.gridAttribute<float>("table", std::vector<float>(1000, 0.1F));
  load.gridAttribute<std::string>("time_base", {std::string(500, 'x')});
  const std::string text = textOf(load);
  EXPECT_LE(widestLine(text), 100U) << text;
  EXPECT_THAT(text, HasSubstr("0.1 ... of 1,000\n"));
  EXPECT_THAT(text, HasSubstr("xxx ...\n"));
}

TEST(PeopleReport, NotANumberIsLeftOutOfMinimumAndMaximum) {
  constexpr float none = std::numeric_limits<float>::quiet_NaN();
  HandMade load;
  load.column<float>("Some", {none, 2, none, 1}).column<float>("None", {none});
  const std::string text = textOf(load);
  EXPECT_THAT(text, HasSubstr("float                       nan            1            1            2\n"));
  EXPECT_THAT(text, HasSubstr("float                       nan          nan          nan          nan\n"));
}

TEST(PeopleReport, RangeSpansAllFragments) {
  HandMade load;
  load.column<int>("Column", {5, 7}, "Fragment_0").column<int>("Column", {-3}, "Fragment_1");
  EXPECT_THAT(textOf(load),
              HasSubstr("int                           5           -3           -3            7\n"));
}

TEST(PeopleReport, ValuesAreListedWhenWanted) {
  HandMade load;
  load.column<int>("Column", {5, 7, 9});
  EXPECT_THAT(textOf(load, 2), HasSubstr("  Column, Fragment_0\n           0  5\n           1  7\n"));
  EXPECT_THAT(textOf(load, 2), Not(HasSubstr("2  9\n")));
}

TEST(PeopleReport, ControlCharactersDoNotReachTheTerminal) {
  HandMade load;
  load.request.file = "\x1b[2J.rdbx";
  load.column<int>("\x07", {1}).gridAttribute<std::string>("bell", {"\x07"});
  load.outcome.console = {"\r"};
  const std::string text = textOf(load);
  EXPECT_EQ(text.find_first_of("\x1b\x07\r"), std::string::npos);
  EXPECT_THAT(text, HasSubstr("\\x1b[2J.rdbx"));
}

TEST(PeopleReport, ManyFragmentsAreNotAllListed) {
  HandMade load;
  for (int i = 0; i < 23; ++i) {
    load.column<int>("Column", {i}, "Fragment_" + std::to_string(i));
  }
  EXPECT_THAT(textOf(load), HasSubstr("and 3 more fragments\n"));
}

TEST(PeopleReport, EveryFailureIsALineOfItsOwn) {
  HandMade load;
  load.outcome.result = "no such column";
  load.outcome.rebaseError = "spans two days";
  load.outcome.waveform = nimbrahost::WaveformOutcome{.result = "Error: Key not found"};
  const nimbrahost::PictureOutcome picture{.file = "a.png", .error = "disk full"};
  std::ostringstream err;
  reportFailures(load.request, load.outcome, &picture, err);
  EXPECT_EQ(err.str(), "nimbra-host: scan.rdbx: failed: no such column\n"
                       "nimbra-host: scan.rdbx: time not rebased: spans two days\n"
                       "nimbra-host: scan.rdbx: waveform metadata not read: Error: Key not found\n"
                       "nimbra-host: scan.rdbx: picture not drawn: disk full\n");
}

TEST(PeopleReport, WaveformShowsWhatWasReadAndItsFourCarriers) {
  HandMade load;
  load.outcome.waveform = readWaveform("");
  load.outcome.waveform->speak = "refl_delta 0.5\nampl_unit 0.01\n";
  load.outcome.waveform->pointGrid->attributes().setAttribute("RDB_Segment", hosttest::chunkWith<int>({7}));
  EXPECT_THAT(
      textOf(load),
      testing::EndsWith("\nWaveform processing\n  refl_delta 0.5\n  ampl_unit 0.01\n"
                        "  Waveform grid: 0 attributes\n"
                        "  Point grid: 1 attribute\n    @ RDB_Segment             int                7\n"
                        "  Waveform field: 0 attributes\n  Time reference field: 0 attributes\n"));
}

TEST(PeopleReport, WaveformThatWasNotReadIsShownWithItsReason) {
  HandMade load;
  load.outcome.waveform = readWaveform("Error: Key not found");
  EXPECT_THAT(textOf(load), HasSubstr("\nWaveform processing\n  failed: Error: Key not found\n"));
}

TEST(PeopleReport, PictureIsALineWithItsPointsAndItsScale) {
  const HandMade load;
  std::ostringstream stream;
  nimbrahost::OutputBuffer output(stream);
  const nimbrahost::PictureOutcome picture{.file = "a.png", .pointCount = 12345, .unitsPerPixel = 0.25};
  EXPECT_TRUE(writePeopleReport(output, load.request, load.outcome, {0}, &picture));
  EXPECT_THAT(stream.str(), HasSubstr("Picture   a.png, 12,345 points, one pixel is 0.25\n"));
}

TEST(PeopleReport, RebasingIsALineWhereItWasAskedFor) {
  HandMade load;
  EXPECT_THAT(textOf(load), testing::Not(HasSubstr("Rebasing")));
  load.outcome.rebaseError = "";
  EXPECT_THAT(textOf(load), HasSubstr("Rebasing  done\n"));
  load.outcome.rebaseError = "spans two days";
  EXPECT_THAT(textOf(load), HasSubstr("Rebasing  failed: spans two days\n"));
}

TEST(PeopleReport, ExceptionIsTheResult) {
  HandMade load;
  load.outcome.exception = nimbrahost::Raised{"std::out_of_range", "stod"};
  EXPECT_THAT(textOf(load), HasSubstr("Result    raised std::out_of_range: stod\n"));
}

TEST(PeopleText, NumbersAndSizesReadEasily) {
  EXPECT_EQ(nimbrahost::grouped(0), "0");
  EXPECT_EQ(nimbrahost::grouped(999), "999");
  EXPECT_EQ(nimbrahost::grouped(5000000), "5,000,000");
  EXPECT_EQ(nimbrahost::byteText(999), "999 B");
  EXPECT_EQ(nimbrahost::byteText(45200000), "45.2 MB");
}

TEST(PeopleText, WidthIsCountedInCharacters) {
  EXPECT_EQ(nimbrahost::leftAligned("\xc3\xa4", 3), "\xc3\xa4  ");
  EXPECT_EQ(nimbrahost::rightAligned("\xc3\xa4", 3), "  \xc3\xa4");
  EXPECT_EQ(nimbrahost::leftAligned("longer", 3), "longer");
}

} // namespace
