// SPDX-License-Identifier: BSD-3-Clause
// The rebasing of a time column against a loop that only adds.
#include <rdb2nimbra/rdb2nimbra.h>

#include "bench/support/comparison.h"
#include "bench/support/random_values.h"
#include "model/torvel/references/chunk.h"

namespace {

using Chunk = Torvel::Chunk<double>;

__attribute__((noinline)) void addToAll(std::vector<double>& values, double shift) {
  for (double& value : values) {
    value += shift;
  }
}

bench::Finding rebasing() {
  constexpr int wednesday = 3;
  constexpr double shift = 3 * 86400.0 - 18.0;
  const std::vector<double> stamps = bench::randomValues<double>(1, 0, bench::records(5000000, 50000));
  const Torvel::StrongPtr<Chunk, Torvel::ChunkBase> chunk(new Chunk(stamps.size()));
  std::vector<double>& values = chunk->values();
  const auto refill = [&] { values = stamps; };
  const auto rebase = [&] {
    std::string error;
    Riegl::modifyGPSTime(error, wednesday, chunk, "GPSTime", false);
    bench::require(error.empty(), error);
  };
  refill();
  rebase();
  const std::vector<double> rebased = values;
  refill();
  addToAll(values, shift);
  bench::require(rebased == values && rebased.front() != stamps.front(), "time stamps");
  return bench::compare({.run = rebase, .prepare = refill},
                        {.run = [&] { addToAll(values, shift); }, .prepare = refill});
}

} // namespace

int main(int argc, char** argv) {
  bench::addComparison("modifyGPSTime / bare addition", rebasing);
  return bench::runComparisons(argc, argv);
}
