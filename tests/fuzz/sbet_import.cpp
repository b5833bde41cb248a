// SPDX-License-Identifier: BSD-3-Clause
// Any bytes as an SBET trajectory: they give a complete database, or an error and no file.
#include "tests/fuzz/import_target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  return fuzz::importAnyBytes(bytes, count,
                              [](const auto& request, auto& notes) { rdbtool::importSbet(request, notes); });
}
