// SPDX-License-Identifier: BSD-3-Clause
// The date of a time base: accepted and refused forms, and the lines on the console.
#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/support/console_lines.h"

#include <gtest/gtest.h>
#include <ostream>
#include <tuple>

namespace {

using Lines = std::vector<std::string>;

const Lines silent;
const Lines invalidJson{"parseDate: invalid json file "};
const Lines noEpoch{"parseDate: have no epoch "};
const Lines notThreeTokens{"parseDate: token.size() != 3  "};
const Lines noSystem{"baseRDB2Nimbra:parseDate: Warning: have no object system! Assuming UTC.",
                     "Trajectory and PointCloud need to have the same time system!"};
const Lines testDate{"WARNING WARNING WARNING OVERWRITE DAT FROM 8 to 9 FOR TEST EXAMPLE",
                     "parseDate: test date 2019-02-08 found, changing to 2019-02-09 "};
const Lines testDateNoSystem{testDate[0], testDate[1], noSystem[0], noSystem[1]};

struct Case {
  std::string name;
  std::string text;
  bool isUTC;
  int day;
  int month;
  int year;
  Lines console;

  friend void PrintTo(const Case& test, std::ostream* stream) { *stream << test.name; }
};

class TimeBaseText : public testing::TestWithParam<Case> {};

TEST_P(TimeBaseText, GivesItsDateAndItsLines) {
  const support::ConsoleLines console;
  const Riegl::TimeBaseDate date = Riegl::parseDate(GetParam().text);
  EXPECT_EQ(date.isUTC, GetParam().isUTC);
  EXPECT_EQ(date.day, GetParam().day);
  EXPECT_EQ(date.month, GetParam().month);
  EXPECT_EQ(date.year, GetParam().year);
  EXPECT_EQ(console.lines(), GetParam().console);
}

std::string epoch(const std::string& text, const std::string& rest = R"(,"system":"UTC")") {
  return R"({"epoch":")" + text + R"(","source":"GNSS")" + rest + "}";
}

INSTANTIATE_TEST_SUITE_P(
    OfEveryForm, TimeBaseText,
    testing::Values(
        Case{"Utc", epoch("2015-10-27T00:00:00+00:00"), true, 27, 10, 2015, silent},
        Case{"Gps", epoch("2015-10-27T00:00:00+00:00", R"(,"system":"GPS")"), false, 27, 10, 2015, silent},
        Case{"Unknown", epoch("2015-10-27", R"(,"system":"unknown")"), false, 27, 10, 2015, silent},
        Case{"LowerCaseUtc", epoch("2015-10-27", R"(,"system":"utc")"), false, 27, 10, 2015, silent},
        Case{"UtcWithBlank", epoch("2015-10-27", R"(,"system":"UTC ")"), false, 27, 10, 2015, silent},
        Case{"UtcWithNul", epoch("2015-10-27", R"(,"system":"UTC\u0000")"), false, 27, 10, 2015, silent},
        Case{"SystemIsANumber", epoch("2015-10-27", R"(,"system":1)"), false, 27, 10, 2015, silent},
        Case{"SystemIsNull", epoch("2015-10-27", R"(,"system":null)"), false, 27, 10, 2015, silent},
        Case{"NoSystem", epoch("2015-10-27", ""), true, 27, 10, 2015, noSystem},
        Case{"TestDate", epoch("2019-02-08T00:00:00+00:00"), true, 9, 2, 2019, testDate},
        Case{"TestDateNoSystem", epoch("2019-02-08T00:00:00+00:00", ""), true, 9, 2, 2019, testDateNoSystem},
        Case{"TestDateGps", epoch("2019-02-08", R"(,"system":"GPS")"), false, 9, 2, 2019, testDate},
        Case{"DayAfterTestDate", epoch("2019-02-09T00:00:00+00:00"), true, 9, 2, 2019, silent},
        Case{"TestDateOfAnotherYear", epoch("2018-02-08"), true, 8, 2, 2018, silent},
        Case{"TestDateOfAnotherMonth", epoch("2019-03-08"), true, 8, 3, 2019, silent},
        Case{"NegativeZone", epoch("2015-10-27T00:00:00-05:00"), false, -1, -1, -1, notThreeTokens},
        Case{"TrailingDash", epoch("2019-02-"), false, -1, -1, -1, notThreeTokens},
        Case{"ThreeTokensAndTrailingDash", epoch("2019-02-03-"), true, 3, 2, 2019, silent},
        Case{"EpochIsANumber", R"({"epoch":2015})", false, -1, -1, -1, notThreeTokens},
        Case{"EpochIsEmpty", epoch(""), false, -1, -1, -1, notThreeTokens},
        Case{"NoEpoch", R"({"source":"GNSS"})", false, -1, -1, -1, noEpoch},
        Case{"EmptyText", "", false, -1, -1, -1, invalidJson},
        Case{"Array", "[1]", false, -1, -1, -1, invalidJson},
        Case{"Scalar", "42", false, -1, -1, -1, invalidJson},
        Case{"HalfAnObject", R"({"epoch":)", false, -1, -1, -1, invalidJson},
        Case{"NulInTheText", std::string("{\"epoch\":\0\"2015-10-27\"}", 23), false, -1, -1, -1, invalidJson},
        Case{"NulInTheEpoch", R"({"epoch":"2015-10-27\u0000-1","system":"UTC"})", true, 27, 10, 2015, silent},
        Case{"BrokenUtf8", epoch("2015-10-27", ",\"system\":\"UTC\",\"x\":\"\xFF\""), true, 27, 10, 2015,
             silent},
        Case{"NothingIsChecked", epoch("-0-77-99"), false, -1, -1, -1, notThreeTokens},
        Case{"OutOfAnyCalendar", epoch("0-77-99"), true, 99, 77, 0, silent},
        Case{"BlanksAndTails", epoch(" +2015x- 10y-\\t27z"), true, 27, 10, 2015, silent}),
    [](const auto& tested) { return tested.param.name; });

// The parser has int lengths, of the UTF-16 units and of their UTF-8 bytes.
TEST(TimeBaseText, IsRefusedBeforeItsLengthOverflowsTheParsers) {
  const support::ConsoleLines console;
  const std::string tooLong(715827882, ' ');
  EXPECT_EQ(Riegl::parseDate(tooLong).day, -1);
  EXPECT_EQ(console.lines(), invalidJson);
}

TEST(TimeBaseText, WithAnEmptyTokenRaisesTheConversionsException) {
  EXPECT_THROW(Riegl::parseDate(epoch("2019--08")), std::invalid_argument);
}

template <class Exception>
std::string raisedText(const std::string& text) {
  try {
    Riegl::parseDate(text);
  } catch (const Exception& exception) {
    return exception.what();
  }
  return "nothing";
}

TEST(TimeBaseText, WithATokenThatIsNoNumberRaisesStoi) {
  EXPECT_EQ(raisedText<std::invalid_argument>(epoch("2019-Feb-08")), "stoi");
  EXPECT_EQ(raisedText<std::invalid_argument>(epoch("--1")), "stoi");
}

TEST(TimeBaseText, WithANumberTooLargeRaisesStoi) {
  EXPECT_EQ(raisedText<std::out_of_range>(epoch("2019-02-99999999999")), "stoi");
}

TEST(TimeBaseText, IsConvertedFromTheYearToTheDay) {
  EXPECT_EQ(raisedText<std::out_of_range>(epoch("99999999999-x-x")), "stoi");
  EXPECT_EQ(raisedText<std::invalid_argument>(epoch("2019-x-99999999999")), "stoi");
}

TEST(TimeBaseDate, HoldsTheFlagThenDayMonthAndYear) {
  const auto [isUTC, day, month, year] = Riegl::TimeBaseDate{true, 1, 2, 3};
  const Riegl::TimeBaseDate date = Riegl::parseDate(epoch("3-2-1"));
  EXPECT_EQ(std::tie(isUTC, day, month, year), std::tie(date.isUTC, date.day, date.month, date.year));
}

} // namespace
