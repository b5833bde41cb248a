// SPDX-License-Identifier: BSD-3-Clause
// The search rule: which value counts if a key occurs several times.
#include "loader/waveform/json_search.h"

#include "loader/database/json_document.h"
#include "tests/support/output_log.h"

#include <QJsonDocument>
#include <gmock/gmock.h>
#include <ostream>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

constexpr double untouched = -77;

struct NumberCase {
  std::string name;
  std::string json;
  bool found;
  double value;

  friend void PrintTo(const NumberCase& test, std::ostream* stream) { *stream << test.name; }
};

template <class Case>
std::string caseName(const testing::TestParamInfo<Case>& test) {
  return test.param.name;
}

class NumberUnderK : public testing::TestWithParam<NumberCase> {};

TEST_P(NumberUnderK, IsTheLastHitOfTheWalk) {
  const support::OutputLog log;
  double value = untouched;
  EXPECT_EQ(Riegl::parseJsonValue<double>(GetParam().json, "k", value), GetParam().found);
  EXPECT_EQ(value, GetParam().value);
  EXPECT_THAT(log.said(), ElementsAre());
}

INSTANTIATE_TEST_SUITE_P(
    Search, NumberUnderK,
    testing::Values(
        NumberCase{"Plain", R"({"k": 1.5})", true, 1.5},
        NumberCase{"NumberInText", R"({"k": "2.5e-3"})", true, 2.5e-3},
        NumberCase{"NumberInTextWithBlanks", R"({"k": " 7 "})", true, 7},
        NumberCase{"UnreadableTextIsZero", R"({"k": "seven"})", true, 0},
        NumberCase{"EmptyTextIsZero", R"({"k": ""})", true, 0},
        NumberCase{"NumberWithRestIsZero", R"({"k": "7 m"})", true, 0},
        NumberCase{"DecimalCommaIsZero", R"({"k": "1,5"})", true, 0},
        NumberCase{"NullIsNoHit", R"({"k": null})", false, untouched},
        NumberCase{"BooleanIsNoHit", R"({"k": true})", false, untouched},
        NumberCase{"ArrayOfNumbersIsNoHit", R"({"k": [1, 2]})", false, untouched},
        NumberCase{"ObjectIsNoHit", R"({"k": {"a": 1}})", false, untouched},
        NumberCase{"ObjectUnderTheKeyIsSearched", R"({"k": {"k": 3}})", true, 3},
        NumberCase{"ArrayUnderTheKeyIsSearched", R"({"k": [{"k": 4}, {"k": 5}]})", true, 5},
        NumberCase{"Absent", R"({"a": 1})", false, untouched},
        NumberCase{"EmptyObject", R"({})", false, untouched},
        NumberCase{"KeysAreWholeAndCaseCounts", R"({"K": 1, "kk": 2, "": 3})", false, untouched},
        NumberCase{"LastElementOfAnArray", R"({"files": [{"k": 1}, {"k": 2}]})", true, 2},
        NumberCase{"LastElementWithTheKey", R"({"files": [{"k": 1}, {"k": 2}, {"j": 3}, {"k": null}]})", true,
                   2},
        NumberCase{"ArrayInAnArrayIsNotSearched", R"({"files": [[{"k": 1}]]})", false, untouched},
        NumberCase{"ArrayInAnArrayIsPassedOver", R"({"files": [{"k": 1}, [{"k": 2}], 3, "k", null]})", true,
                   1},
        NumberCase{"ArrayInAnElementIsSearched", R"({"files": [{"more": [{"k": 6}]}]})", true, 6},
        NumberCase{"EarlierNestedIsWrittenOver", R"({"a": {"k": 1}, "k": 2})", true, 2},
        NumberCase{"DirectHitEndsTheWalk", R"({"k": 2, "z": {"k": 1}})", true, 2},
        NumberCase{"DirectHitEndsTheWalkBeforeArrays", R"({"k": 2, "z": [{"k": 1}]})", true, 2},
        NumberCase{"OrderOfKeysAndNotOfTheText", R"({"z": {"k": 1}, "k": 2})", true, 2},
        NumberCase{"SortedSiblingsLastWins", R"({"c": {"k": 3}, "a": {"k": 1}, "b": {"k": 2}})", true, 3},
        NumberCase{"ArrayBehindAHitWritesOverIt", R"({"a": {"k": 1}, "b": [{"k": 2}]})", true, 2},
        NumberCase{"CapitalsSortFirst", R"({"b": {"k": 1}, "B": {"k": 2}})", true, 1},
        NumberCase{"DirectHitEndsItsOwnObjectOnly", R"({"a": {"k": 1, "z": {"k": 9}}, "b": {"k": 2}})", true,
                   2},
        NumberCase{"NoHitDoesNotEndTheWalk", R"({"k": null, "z": {"k": 1}})", true, 1},
        NumberCase{"UnreadableTextWritesOverToo", R"({"a": {"k": 5}, "b": {"k": "x"}})", true, 0},
        NumberCase{"FoundIsKeptThroughLaterMisses", R"({"a": {"k": 5}, "b": {"j": 1}, "c": [{}]})", true, 5}),
    caseName<NumberCase>);

struct TextCase {
  std::string name;
  std::string json;
  bool found;
  std::string value;

  friend void PrintTo(const TextCase& test, std::ostream* stream) { *stream << test.name; }
};

class TextUnderK : public testing::TestWithParam<TextCase> {};

TEST_P(TextUnderK, IsTheLastTextOfTheWalk) {
  std::string value = "untouched";
  EXPECT_EQ(Riegl::parseJsonValue<std::string>(GetParam().json, "k", value), GetParam().found);
  EXPECT_EQ(value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Search, TextUnderK,
    testing::Values(TextCase{"Plain", R"({"k": "abc"})", true, "abc"},
                    TextCase{"Empty", R"({"k": ""})", true, ""},
                    TextCase{"NumberIsNoHit", R"({"k": 12})", false, "untouched"},
                    TextCase{"NullIsNoHit", R"({"k": null})", false, "untouched"},
                    TextCase{"NumberDoesNotEndTheWalk", R"({"k": 12, "z": {"k": "in"}})", true, "in"},
                    TextCase{"Utf8", R"({"k": "Grüße \u00e4"})", true, "Grüße ä"},
                    TextCase{"BeyondTheBasicPlane", R"({"k": "\ud83d\ude00"})", true, "\xF0\x9F\x98\x80"},
                    TextCase{"EscapedZeroByteIsKept", R"({"k": "a\u0000b"})", true, std::string("a\0b", 3)},
                    TextCase{"BrokenUtf8IsReplaced",
                             "{\"k\": \"a\xFF"
                             "b\"}",
                             true,
                             "a\xEF\xBF\xBD"
                             "b"},
                    TextCase{"ByteOrderMarkIsPassedOver", "\xEF\xBB\xBF{\"k\": \"v\"}", true, "v"},
                    TextCase{"LastOfAnArray", R"({"a": [{"k": "x"}, {"k": "y"}, {"k": 1}]})", true, "y"}),
    caseName<TextCase>);

TEST(Search, FindsAKeyThatIsNotAscii) {
  double value = 0;
  EXPECT_TRUE(Riegl::parseJsonValue<double>(R"({"größe": 3})", "größe", value));
  EXPECT_EQ(value, 3);
}

TEST(Search, OfAnObjectNeedsNoDocument) {
  const QJsonObject object = QJsonDocument::fromJson(R"({"a": {"k": "4"}})").object();
  double number = 0;
  std::string text;
  EXPECT_TRUE(Riegl::findJsonValue<double>(object, "k", number));
  EXPECT_TRUE(Riegl::findJsonValue<std::string>(object, "k", text));
  EXPECT_EQ(number, 4);
  EXPECT_EQ(text, "4");
}

TEST(Search, OfAnEmptyKeyInAnObjectFindsTheMemberWithoutAName) {
  double value = 0;
  EXPECT_TRUE(Riegl::findJsonValue<double>(QJsonDocument::fromJson(R"({"": 8})").object(), "", value));
  EXPECT_EQ(value, 8);
}

class NoObject : public testing::TestWithParam<std::string> {};

TEST_P(NoObject, IsReportedOnceAndTouchesNothing) {
  const support::OutputLog log;
  double number = untouched;
  std::string text = "untouched";
  EXPECT_FALSE(Riegl::parseJsonValue<double>(GetParam(), "k", number));
  EXPECT_THAT(log.said(), ElementsAre("cerr|Error: Invalid JSON format\n"));
  EXPECT_FALSE(Riegl::parseJsonValue<std::string>(GetParam(), "", text));
  EXPECT_FALSE(Riegl::parseJsonValue<double>(GetParam(), "", number));
  EXPECT_THAT(log.said(), testing::SizeIs(3));
  EXPECT_THAT(log.said(), testing::Each("cerr|Error: Invalid JSON format\n"));
  EXPECT_EQ(number, untouched);
  EXPECT_EQ(text, "untouched");
}

INSTANTIATE_TEST_SUITE_P(Document, NoObject,
                         testing::Values("", " ", "[{\"k\": 1}]", "{\"k\": 1", "{\"k\": 1,}", "{\"k\": 01}",
                                         "{'k': 1}", "7", "null", "\"k\"", "not JSON", "{\"k\": 1} x",
                                         std::string("{\"k\": 1}\0", 9), std::string("\0", 1),
                                         std::string("{\0\"k\": 1}", 9), "\xFF"));

TEST(Document, WithAnEmptyKeyIsHandedOutIndentedAndSorted) {
  std::string text = "earlier";
  EXPECT_TRUE(Riegl::parseJsonValue<std::string>(R"({"b":[1,"x"],"a":{"c":null}})", "", text));
  EXPECT_EQ(
      text,
      "{\n    \"a\": {\n        \"c\": null\n    },\n    \"b\": [\n        1,\n        \"x\"\n    ]\n}\n");
}

TEST(Document, WithAnEmptyKeyGivesNoNumber) {
  const support::OutputLog log;
  double value = untouched;
  EXPECT_FALSE(Riegl::parseJsonValue<double>(R"({"": 1})", "", value));
  EXPECT_EQ(value, untouched);
  EXPECT_THAT(log.said(), ElementsAre("cerr|Error: searchKey is empty but result type is not std::string\n"));
}

std::string nested(int levels, const std::string& open, const std::string& core, const std::string& close) {
  std::string text;
  for (int i = 0; i < levels; ++i) {
    text += open;
  }
  text += core;
  for (int i = 0; i < levels; ++i) {
    text += close;
  }
  return text;
}

TEST(DeepDocument, IsSearchedToTheParsersLimit) {
  double value = 0;
  EXPECT_TRUE(Riegl::parseJsonValue<double>(nested(1000, R"({"a":)", R"({"k": 5})", "}"), "k", value));
  EXPECT_EQ(value, 5);
  EXPECT_TRUE(Riegl::parseJsonValue<double>(nested(500, R"({"a":[)", R"({"k": 6})", "]}"), "k", value));
  EXPECT_EQ(value, 6);
}

TEST(DeepDocument, IsRefusedBeyondIt) {
  const support::OutputLog log;
  double value = untouched;
  EXPECT_FALSE(Riegl::parseJsonValue<double>(nested(1000000, R"({"a":)", "1", "}"), "k", value));
  EXPECT_FALSE(Riegl::parseJsonValue<double>(nested(1000000, R"({"a":)", "", ""), "k", value));
  EXPECT_THAT(log.said(),
              ElementsAre("cerr|Error: Invalid JSON format\n", "cerr|Error: Invalid JSON format\n"));
}

TEST(LargeDocument, IsSearchedWhole) {
  std::string text = R"({"many": [)";
  for (int i = 0; i < 200000; ++i) {
    text += R"({"k": )" + std::to_string(i) + R"(, "pad": "0123456789"},)";
  }
  double value = 0;
  EXPECT_TRUE(Riegl::parseJsonValue<double>(text + R"({"k": -1}]})", "k", value));
  EXPECT_EQ(value, -1);
}

TEST(LargeDocument, KeepsALongText) {
  const std::string longText(3000000, 'x');
  std::string value;
  EXPECT_TRUE(Riegl::parseJsonValue<std::string>(R"({"k": ")" + longText + "\"}", "k", value));
  EXPECT_EQ(value, longText);
}

// The parser has int lengths, of the UTF-16 units and of their UTF-8 bytes.
TEST(LongDocument, IsRefusedBeforeItsLengthOverflowsTheParsers) {
  const std::string tooLong(715827882, ' ');
  QJsonParseError error{};
  EXPECT_TRUE(Riegl::parseJsonDocument(tooLong, &error).isNull());
  EXPECT_EQ(error.error, QJsonParseError::DocumentTooLarge);
  EXPECT_EQ(error.offset, 0);
  EXPECT_TRUE(Riegl::parseJsonDocument(tooLong).isNull());
}

} // namespace
