// SPDX-License-Identifier: BSD-3-Clause
// JSON values as the programs print them: layout, escapes, and bytes that are not UTF-8.
#include "apps/common/json_text.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::ordered_json;

TEST(JsonText, IsOneLineUnlessIndented) {
  const Json value = {{"b", 1}, {"a", {1, 2}}};
  EXPECT_EQ(apps::jsonText(value), R"({"b":1,"a":[1,2]})");
  EXPECT_EQ(apps::jsonText(Json{{"b", 1}}, 2), "{\n  \"b\": 1\n}");
}

TEST(JsonText, ReplacesBytesThatAreNotUtf8) {
  EXPECT_EQ(apps::jsonText("a\xff"
                           "b"),
            "\"a\uFFFDb\"");
}

TEST(JsonText, EscapesWhatATerminalActsOn) {
  EXPECT_EQ(apps::jsonText("\x1b \u009b \u202e"), R"("\u001b \u009b \u202e")");
}

} // namespace
