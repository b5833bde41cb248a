// SPDX-License-Identifier: BSD-3-Clause
// The library's side of bench/peers/compare.py: writes the columns of the comparison, and loads them on request.
#include "bench/support/database.h"
#include "bench/support/program.h"

#include <chrono>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <numeric>

namespace {

/// 36 bytes per record, in the order of the bare file that the script reads.
std::vector<bench::Column> columns() {
  return {{"riegl.xyz", "Positions", bench::ElementType::float64, 3, true},
          {"riegl.timestamp", "GPSTime", bench::ElementType::float64, 1, true},
          {"riegl.echo_count", "EchoCount", bench::ElementType::uint16, 1, true},
          {"riegl.target_index", "TargetIndex", bench::ElementType::uint8, 1, true},
          {"riegl.mirror_facet", "MirrorFacet", bench::ElementType::uint8, 1, true}};
}

double sumOfStamps(const Nimbra::Grid& grid) {
  double sum = 0;
  for (const bench::Bytes& fragment : bench::fragmentsOf(grid, "GPSTime")) {
    const auto* const stamps = reinterpret_cast<const double*>(fragment.first);
    sum = std::accumulate(stamps, stamps + fragment.count / sizeof(double), sum);
  }
  return sum;
}

/// One load per line of input; prints its seconds and the sum of the time stamps.
void loadOnRequest(const std::string& path) {
  for (std::string line; std::getline(std::cin, line);) {
    Nimbra::Grid grid;
    const auto start = std::chrono::steady_clock::now();
    bench::load(path, grid);
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
    std::printf("%.6f %.17g\n", spent.count(), sumOfStamps(grid));
    std::fflush(stdout);
  }
}

int run(int argc, char** argv) {
  if (argc == 5 && std::strcmp(argv[1], "write") == 0) {
    bench::writeDatabase(argv[2], std::stoull(argv[4]), columns(), argv[3]);
    return 0;
  }
  if (argc == 3 && std::strcmp(argv[1], "load") == 0) {
    loadOnRequest(argv[2]);
    return 0;
  }
  std::fprintf(stderr, "usage: peer_columns write DATABASE BARE_FILE RECORDS | peer_columns load DATABASE\n");
  return 2;
}

} // namespace

int main(int argc, char** argv) {
  return bench::runProgram("peer_columns", run, argc, argv);
}
