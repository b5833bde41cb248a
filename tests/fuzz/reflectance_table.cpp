// SPDX-License-Identifier: BSD-3-Clause
// Any text as the item of the reflectance table.
#include "loader/waveform/parsers.h"
#include "tests/fuzz/fuzz_target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  Torvel::StrongPtr<Torvel::Chunk<float>, Torvel::ChunkBase> table;
  const bool read = Riegl::parse_reflectance_table(fuzz::silentText(bytes, count), table);
  fuzz::require(!read || static_cast<bool>(table), "a table that was read is there");
  fuzz::require(!table || read == (table->size() <= 64000), "a table is refused for its size alone");
  fuzz::require(!table || table->size() <= count, "each element takes at least one byte of text");
  return 0;
}
