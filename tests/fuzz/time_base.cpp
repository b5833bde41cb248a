// SPDX-License-Identifier: BSD-3-Clause
// Any text as the item of the time base.
#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/fuzz/fuzz_target.h"

#include <stdexcept>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  try {
    const Riegl::TimeBaseDate date = Riegl::parseDate(fuzz::silentText(bytes, count));
    const bool refused = date.day == -1 && date.month == -1 && date.year == -1;
    fuzz::require(!refused || !date.isUTC, "a refused text gives no time system");
  } catch (const std::invalid_argument& error) {
    fuzz::require(std::string(error.what()) == "stoi", "only a number can raise");
  } catch (const std::out_of_range& error) {
    fuzz::require(std::string(error.what()) == "stoi", "only a number can raise");
  }
  return 0;
}
