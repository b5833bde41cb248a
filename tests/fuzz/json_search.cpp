// SPDX-License-Identifier: BSD-3-Clause
// The first line is the key, the rest the document that is searched for it.
#include "loader/waveform/json_search.h"

#include "tests/fuzz/fuzz_target.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  const std::string input = fuzz::silentText(bytes, count);
  const std::size_t lineEnd = std::min(input.find('\n'), input.size());
  const std::string key = input.substr(0, lineEnd);
  const std::string json = input.substr(std::min(lineEnd + 1, input.size()));
  double number = -77;
  const bool numberFound = Riegl::parseJsonValue<double>(json, key, number);
  fuzz::require(numberFound || number == -77, "a miss leaves the number");
  std::string text = "untouched";
  const bool textFound = Riegl::parseJsonValue<std::string>(json, key, text);
  fuzz::require(textFound || text == "untouched", "a miss leaves the text");
  fuzz::require(key.empty() || !textFound || numberFound, "a text is a hit for numbers as well");
  std::string whole;
  if (Riegl::parseJsonValue<std::string>(json, "", whole)) {
    std::string again;
    fuzz::require(Riegl::parseJsonValue<std::string>(whole, "", again), "an indented document reads back");
  }
  return 0;
}
