// SPDX-License-Identifier: BSD-3-Clause
// How texts from files and users are shown on a terminal.
#include "apps/common/printable_text.h"

#include <gtest/gtest.h>
#include <ostream>
#include <sstream>

namespace {

struct Shown {
  const char* name;
  std::string_view text;
  const char* expected;
};

void PrintTo(const Shown& row, std::ostream* out) {
  *out << row.name;
}

using namespace std::string_view_literals;

class Printable : public testing::TestWithParam<Shown> {};

TEST_P(Printable, IsShownAsExpected) {
  EXPECT_EQ(apps::printable(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Printable,
    testing::Values(Shown{"Empty", "", ""}, Shown{"Ascii", " az~\\\"", " az~\\\""},
                    Shown{"Umlaut", "\xc3\xbc", "\xc3\xbc"}, Shown{"Euro", "\xe2\x82\xac", "\xe2\x82\xac"},
                    Shown{"Emoji", "\xf0\x9f\x98\x80", "\xf0\x9f\x98\x80"},
                    Shown{"LastCodePoint", "\xf4\x8f\xbf\xbf", "\xf4\x8f\xbf\xbf"},
                    Shown{"Zero", "a\0b"sv, "a\\x00b"}, Shown{"LineFeed", "a\nb\r\t", "a\\x0ab\\x0d\\x09"},
                    Shown{"Escape", "\x1b[2J", "\\x1b[2J"}, Shown{"LastOfC0", "\x1f", "\\x1f"},
                    Shown{"Delete", "\x7f", "\\x7f"}, Shown{"FirstOfC1", "\xc2\x80", "\\u0080"},
                    Shown{"ControlSequence",
                          "\xc2\x9b"
                          "31m",
                          "\\u009b31m"},
                    Shown{"LastOfC1", "\xc2\x9f", "\\u009f"}, Shown{"BehindC1", "\xc2\xa0", "\xc2\xa0"},
                    Shown{"BeforeEmbedding", "\xe2\x80\xa9", "\xe2\x80\xa9"},
                    Shown{"Embedding", "\xe2\x80\xaa", "\\u202a"},
                    Shown{"Override", "\xe2\x80\xae", "\\u202e"},
                    Shown{"BehindOverride", "\xe2\x80\xaf", "\xe2\x80\xaf"},
                    Shown{"Isolate", "\xe2\x81\xa6", "\\u2066"},
                    Shown{"PopIsolate", "\xe2\x81\xa9", "\\u2069"},
                    Shown{"BehindPopIsolate", "\xe2\x81\xaa", "\xe2\x81\xaa"}),
    [](const auto& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(InvalidUtf8, Printable,
                         testing::Values(Shown{"NoFirstByte", "\xff", "\\xff"},
                                         Shown{"Continuation", "\x80 \xbf", "\\x80 \\xbf"},
                                         Shown{"CutOff", "\xe2\x82", "\\xe2\\x82"},
                                         Shown{"CutOffBeforeAscii", "\xe2\x82z", "\\xe2\\x82z"},
                                         Shown{"LongZero", "\xc0\x80", "\\xc0\\x80"},
                                         Shown{"LongEscape", "\xe0\x80\x9b", "\\xe0\\x80\\x9b"},
                                         Shown{"LongFourBytes", "\xf0\x80\x80\x9b", "\\xf0\\x80\\x80\\x9b"},
                                         Shown{"Surrogate", "\xed\xa0\x80", "\\xed\\xa0\\x80"},
                                         Shown{"BehindUnicode", "\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},
                                         Shown{"C1AsOneByte", "\x9b", "\\x9b"}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(PrintableJson, ControlsInStringsBecomeJsonEscapes) {
  EXPECT_EQ(apps::printableJson("{\n\t\"\x7f\xc2\x9b\xe2\x80\xae\": \"\xc3\xbc\"}"),
            "{\n\t\"\\u007f\\u009b\\u202e\": \"\xc3\xbc\"}");
}

TEST(PrintLine, IsOneLineWhateverTheTextHolds) {
  std::ostringstream stream;
  apps::printLine(stream, "one\ntwo");
  EXPECT_EQ(stream.str(), "one\\x0atwo\n");
}

} // namespace
