// SPDX-License-Identifier: BSD-3-Clause
// Which option values are accepted, the error text for the others, and numbers as text.
#include "apps/common/option_checks.h"

#include "apps/common/number_text.h"
#include "apps/common/version_text.h"

#include <cstdint>
#include <gmock/gmock.h>
#include <limits>

namespace {

TEST(OptionChecks, DecimalNumbersAreTaken) {
  for (const char* const text : {"0", "7", "-7", "2147483647", "-2147483648"}) {
    EXPECT_EQ(apps::decimalProblem<int>(text), "") << text;
  }
}

TEST(OptionChecks, WhatIsNotADecimalNumberIsNamed) {
  for (const std::string text : {"", "-", "+1", "010", "0x10", "1e3", " 1", "1 ", "-0", "many"}) {
    EXPECT_EQ(apps::decimalProblem<int>(text), "expected a whole number, found " + text);
  }
  EXPECT_EQ(apps::decimalProblem<std::uint8_t>("-1"), "expected a whole number, found -1");
}

TEST(OptionChecks, ANumberOutsideTheRangeIsNamedWithTheRange) {
  EXPECT_EQ(apps::decimalProblem<int>("2147483648"),
            "expected a whole number from -2147483648 to 2147483647, found 2147483648");
}

TEST(OptionChecks, WholeNumbersHaveNothingBesideThem) {
  EXPECT_EQ(apps::wholeNumber<int>("012"), 12);
  for (const char* const text : {"", "1x", "x1", "99999999999"}) {
    EXPECT_EQ(apps::wholeNumber<int>(text), std::nullopt) << text;
  }
}

TEST(OptionChecks, APathHasAtLeastOneCharacter) {
  EXPECT_EQ(apps::pathProblem("a"), "");
  EXPECT_EQ(apps::pathProblem(""), "expected the path of a file, found an empty text");
}

TEST(NumberText, IsTheShortestThatReadsBack) {
  using Limits = std::numeric_limits<double>;
  EXPECT_EQ(apps::numberText(0.1), "0.1");
  EXPECT_EQ(apps::numberText(-Limits::max()), "-1.7976931348623157e+308");
  EXPECT_EQ(apps::numberText(-Limits::quiet_NaN()), "nan");
  EXPECT_EQ(apps::numberText(-Limits::infinity()), "-inf");
}

TEST(VersionText, IsTheNameAndThreeNumbers) {
  EXPECT_THAT(apps::versionText("program"), testing::MatchesRegex("program [0-9]+\\.[0-9]+\\.[0-9]+"));
}

} // namespace
