// SPDX-License-Identifier: BSD-3-Clause
// `nimbra-host load --json` without values against a process that loads the same file and does nothing else.
#include "bench/support/child.h"
#include "bench/support/comparison.h"
#include "bench/support/database.h"
#include "bench/support/program.h"
#include "tests/support/temp_dir.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

bench::Spent spentBy(const std::vector<std::string>& command) {
  return bench::spentBy([&] { bench::output(command); });
}

/// In the child: the load, and how many values of "GPSTime" there are afterwards.
int loadAlone(const char* path) {
  Nimbra::Grid grid;
  bench::load(path, grid);
  std::size_t bytes = 0;
  for (const bench::Bytes& fragment : bench::fragmentsOf(grid, "GPSTime")) {
    bytes += fragment.count;
  }
  std::printf("%zu\n", bytes / sizeof(double));
  return 0;
}

bench::Finding host() {
  const support::TempDir directory;
  const std::string path = directory.path("scan.rdbx");
  const unsigned int rows = bench::records(20000000, 100000);
  bench::writeDatabase(path, rows, bench::scanColumns());
  const std::vector<std::string> withHost{HOST_PROGRAM, "load", path, "--all-attributes", "--json"};
  const std::vector<std::string> alone{bench::thisProgram(), "load", path};
  const std::string report = bench::output(withHost);
  const std::string count = "\"count\": " + std::to_string(std::min(rows, 5000000U)) + ",";
  bench::require(report.find(count) != std::string::npos, "records in " + report);
  bench::require(bench::numbers(alone).at(0) == rows, "records of the load alone");
  return bench::compareMeasured([&] { return spentBy(withHost); }, [&] { return spentBy(alone); });
}

int run(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "load") == 0) {
    return loadAlone(argv[2]);
  }
  bench::addComparison("nimbra-host load --json / the load alone", host);
  return bench::runComparisons(argc, argv);
}

} // namespace

int main(int argc, char** argv) {
  return bench::runProgram("host_bench", run, argc, argv);
}
