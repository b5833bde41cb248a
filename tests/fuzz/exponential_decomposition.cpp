// SPDX-License-Identifier: BSD-3-Clause
// Any text as the item of the exponential decomposition.
#include "loader/waveform/parsers.h"
#include "tests/fuzz/fuzz_target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  Riegl::ExponentialDecompositionMap channels;
  const bool read = Riegl::parse_exponential_decomposition(fuzz::silentText(bytes, count), channels);
  fuzz::require(read || channels.empty(), "a text that is refused has no channels");
  std::size_t numbers = 0;
  for (const auto& [name, channel] : channels) {
    numbers += channel.A.size() + channel.B.size() + channel.gamma.size() + channel.omega.size();
  }
  fuzz::require(numbers <= count, "each number takes at least one byte of text");
  return 0;
}
