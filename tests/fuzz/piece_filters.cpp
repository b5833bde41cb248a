// SPDX-License-Identifier: BSD-3-Clause
// A byte each of filter, width and length, then records: filter and inverse, in either order, restore them.
#include "container/codec/filters.h"
#include "tests/fuzz/fuzz_target.h"

#include <algorithm>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  using namespace container::codec;
  if (count < 3) {
    return 0;
  }
  const auto filter = static_cast<Filter>(bytes[0] % 3);
  RecordShape shape{std::size_t{1} << bytes[1] % 4, bytes[2] % std::size_t{40} + 1, 0};
  shape.count = (count - 3) / (shape.valueBytes * shape.length);
  const auto* first = reinterpret_cast<const std::byte*>(bytes) + 3;
  const std::vector<std::byte> input(first, first + shape.bytes());
  std::vector<std::byte> once(shape.bytes());
  std::vector<std::byte> twice(shape.bytes());
  applyFilter(filter, shape, input.data(), once.data());
  removeFilter(filter, shape, once.data(), twice.data());
  fuzz::require(twice == input, "a filter is undone");
  removeFilter(filter, shape, input.data(), once.data());
  applyFilter(filter, shape, once.data(), twice.data());
  fuzz::require(twice == input, "filtering undoes the inverse");
  return 0;
}
