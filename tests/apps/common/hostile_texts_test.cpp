// SPDX-License-Identifier: BSD-3-Clause
// Texts from files and users that would control a terminal: both programs escape them before they print them.
#include "tests/apps/rdbtool/tool_run.h"
#include "tests/support/database.h"
#include "tests/support/temp_dir.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace {

using container::ElementType;
using testing::HasSubstr;

/// Escape, bell, DEL, C1, an override, an isolate and a byte that is not UTF-8, with a letter at each end.
const std::string hostile = "a\x1b]0;\x07\x7f\xc2\x9b\xe2\x80\xae\xe2\x81\xa7\xffz";
const std::string escaped = "a\\x1b]0;\\x07\\x7f\\u009b\\u202e\\u2067\\xffz";

/// Whether a text has a byte or a character that terminals act on, line feeds aside.
bool controlsTerminals(const std::string& text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    const std::string three = text.substr(at, 3);
    const bool c1 = byte == 0xc2 && at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) < 0xa0;
    if ((byte < 0x20 && byte != '\n') || byte == 0x7f || byte == 0xff || c1 ||
        (three >= "\xe2\x80\xaa" && three <= "\xe2\x80\xae") ||
        (three >= "\xe2\x81\xa6" && three <= "\xe2\x81\xa9")) {
      return true;
    }
  }
  return false;
}

class HostileTexts : public testing::Test {
 protected:
  HostileTexts() {
    support::Column points =
        support::column("riegl.xyz", ElementType::float64, 3, [](auto, auto) { return 1; });
    points.spec.unit = points.spec.title = points.spec.description = hostile;
    support::Column odd = support::column(hostile, ElementType::uint8, 1, [](auto, auto) { return 1; });
    odd.spec.unit = hostile;
    support::writeDatabase(file, 10, {points, odd},
                           {{hostile, hostile}, {"riegl.time_base", R"({"epoch": ")" + hostile + R"("})"}});
  }
  support::Run run(const char* program, const std::vector<std::string>& arguments) const {
    return support::runProgram(program, arguments, data.root().string());
  }
  /// Runs a program and checks all that it prints. \return both outputs
  std::string printed(const char* program, const std::vector<std::string>& arguments) const {
    const support::Run result = run(program, arguments);
    EXPECT_FALSE(controlsTerminals(result.out)) << testing::PrintToString(arguments) << result.out;
    EXPECT_FALSE(controlsTerminals(result.err)) << testing::PrintToString(arguments) << result.err;
    return result.out + result.err;
  }
  support::TempDir data, folder;
  const std::string file = folder.path(hostile + ".rdbx");
};

TEST_F(HostileTexts, AreShownEscapedByTheTool) {
  EXPECT_THAT(printed(TOOL_PROGRAM, {"info", file}),
              testing::AllOf(HasSubstr("\n  " + escaped), HasSubstr("/" + escaped)));
  EXPECT_THAT(printed(TOOL_PROGRAM, {"verify", file}), HasSubstr(escaped + ".rdbx: 2 blocks"));
  run(TOOL_PROGRAM, {"damage", file, "--attribute", hostile, "--flip-byte", "0"});
  EXPECT_THAT(printed(TOOL_PROGRAM, {"verify", file}), HasSubstr("\"" + escaped + "\""));
}

TEST_F(HostileTexts, AreShownEscapedByTheHost) {
  const std::string report = printed(HOST_PROGRAM, {"load", "--all-attributes", "--waveform", file});
  EXPECT_THAT(report, HasSubstr("File      " + folder.path(escaped + ".rdbx\n")));
  EXPECT_THAT(report,
              HasSubstr("nimbra-host: " + folder.path(escaped + ".rdbx: waveform metadata not read: ")));
}

TEST_F(HostileTexts, KeepTheirMeaningInJson) {
  const auto meaning = [](const std::string& text) {
    return text.substr(0, text.find('\xff')) + "\xef\xbf\xbdz";
  };
  const auto described = nlohmann::json::parse(printed(TOOL_PROGRAM, {"info", "--json", file}));
  EXPECT_EQ(described["attributes"][1]["name"], meaning(hostile));
  EXPECT_EQ(described["attributes"][0]["title"], meaning(hostile));
  const auto loaded =
      nlohmann::json::parse(printed(HOST_PROGRAM, {"load", "--json", "--values", "all", file}));
  EXPECT_EQ(loaded["file"], folder.path(meaning(hostile) + ".rdbx"));
}

TEST_F(HostileTexts, AreEscapedInEveryErrorLine) {
  const std::string absent = folder.path("absent" + hostile);
  const std::vector<std::pair<const char*, std::vector<std::string>>> commands = {
      {TOOL_PROGRAM, {"info", file, hostile}},
      {TOOL_PROGRAM, {"info", absent}},
      {TOOL_PROGRAM, {"verify", absent}},
      {TOOL_PROGRAM, {"import", absent, "-o", file}},
      {TOOL_PROGRAM, {"import", file, "-o", absent, "--format", hostile}},
      {TOOL_PROGRAM, {"import", file, "-o", absent, "--date", hostile}},
      {TOOL_PROGRAM, {"import", file, "-o", absent}},
      {TOOL_PROGRAM, {"damage", file, "--drop-table", hostile}},
      {TOOL_PROGRAM, {"synth", "scan", "--records", hostile, "-o", absent}},
      {TOOL_PROGRAM, {"synth", "scan", "--records", "1", "--columns", hostile, "-o", absent}},
      {TOOL_PROGRAM, {"synth", "scan", "--records", "1", "--without", hostile, "-o", absent}},
      {TOOL_PROGRAM, {"synth", "scan", "--records", "1", "-o", folder.path(hostile + "/none")}},
      {TOOL_PROGRAM, {"synth", "shots", "--records", "1", "-o", folder.path(hostile)}},
      {HOST_PROGRAM, {"load", file, hostile}},
      {HOST_PROGRAM, {"load", absent}},
      {HOST_PROGRAM, {"load", absent + ".pofx"}},
      {HOST_PROGRAM, {"load", file, "--values", hostile}},
      {HOST_PROGRAM, {"load", file, "--size", hostile}},
      {HOST_PROGRAM, {"load", file, "--picture", file}},
      {HOST_PROGRAM, {"load", file, "--picture", folder.path(hostile + "/none.png")}},
      {HOST_PROGRAM, {"load", folder.path(hostile)}}};
  for (const auto& [program, arguments] : commands) {
    EXPECT_THAT(printed(program, arguments), HasSubstr(escaped.substr(1)))
        << testing::PrintToString(arguments);
  }
}

} // namespace
