// SPDX-License-Identifier: BSD-3-Clause
// The checksum of a block's bytes that a read has just brought into the cache, against libdeflate's.
#include "container/format/checksum.h"

#include "bench/support/comparison.h"
#include "bench/support/random_values.h"

#include <libdeflate.h>

namespace {

using container::crc32;

// As many bytes as a load has in the cache at a time, repeatedly.
bench::Finding checksums() {
  const std::size_t times = bench::records(4000, 10);
  const std::vector<double> values = bench::randomValues<double>(1, 0, 32768);
  const std::size_t bytes = values.size() * sizeof(double);
  std::uint32_t ours = 0;
  std::uint32_t theirs = 0;
  const auto path = [&] {
    for (std::size_t i = 0; i < times; ++i) {
      ours = crc32(ours, values.data(), bytes);
    }
  };
  const auto baseline = [&] {
    for (std::size_t i = 0; i < times; ++i) {
      theirs = libdeflate_crc32(theirs, values.data(), bytes);
    }
  };
  path();
  baseline();
  bench::require(ours == theirs, "checksums");
  return bench::compare({.run = path}, {.run = baseline});
}

} // namespace

int main(int argc, char** argv) {
  bench::addComparison("crc32 of 256 KB in the cache / libdeflate", checksums);
  return bench::runComparisons(argc, argv);
}
