// SPDX-License-Identifier: BSD-3-Clause
// What every fuzz target shares: the entry point, claims about the result, and silenced output.
#pragma once

#include "model/torvel/core/speak_ptr.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

/// Called with one input after the other; aborts where a claim does not hold.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count);

/// Qt 5.15 leaks an object whose name occurs twice in a document; that must not end an exploration.
/// Leaks of this project's own code are still reported.
extern "C" __attribute__((used, visibility("default"))) inline const char* __lsan_default_suppressions() {
  return "leak:libQt5Core\n";
}

namespace fuzz {

/// Ends the process, so that the engine keeps the input, unless the claim holds.
inline void require(bool holds, const char* claim) {
  if (!holds) {
    std::fprintf(stderr, "claim does not hold: %s\n", claim);
    std::abort();
  }
}

/// The input as text, with console and std::cerr silent from the first input on.
inline std::string silentText(const std::uint8_t* bytes, std::size_t count) {
  static const bool silent = [] {
    Torvel::setLineSink([](const std::string&) {});
    std::cerr.rdbuf(nullptr);
    return true;
  }();
  static_cast<void>(silent);
  return {reinterpret_cast<const char*>(bytes), count};
}

} // namespace fuzz
