// SPDX-License-Identifier: BSD-3-Clause
// What a load leaves in memory, seen from a process of its own: resident and peak size against the bytes published.
// Prints sizes, not times. docs/benchmarks.md has the targets.
#include "bench/support/child.h"
#include "bench/support/database.h"
#include "bench/support/program.h"
#include "loader/columns/block_size.h"
#include "tests/support/temp_dir.h"

#include <cstdio>
#include <cstring>

namespace {

constexpr double megabyte = 1e6;

/// In the child: loads and prints resident bytes before and after, the peak, and the bytes on the grid.
int reportLoad(const std::string& path, unsigned int rows, std::size_t columnCount) {
  const bench::ProcessMemory before = bench::processMemory();
  Nimbra::Grid grid;
  bench::load(path, grid);
  const bench::ProcessMemory after = bench::processMemory();
  const auto columns = columnCount == 0 ? bench::scanColumns() : bench::vocabularyColumns(columnCount);
  bench::requireLoaded(grid, columns, rows);
  const double published = static_cast<double>(rows) * static_cast<double>(bench::recordBytes(columns));
  std::printf("%llu %llu %llu %.0f\n", static_cast<unsigned long long>(before.residentBytes),
              static_cast<unsigned long long>(after.residentBytes),
              static_cast<unsigned long long>(after.peakBytes), published);
  return 0;
}

/// In the child: the same buffers as vectors filled with zeros.
int reportZeroFill(std::size_t columnCount) {
  const bench::ProcessMemory before = bench::processMemory();
  std::vector<std::vector<unsigned char>> buffers;
  for (const bench::Column& column : bench::vocabularyColumns(columnCount)) {
    buffers.emplace_back(column.recordBytes() * Riegl::recordsPerBlock);
  }
  const bench::ProcessMemory after = bench::processMemory();
  std::printf("%llu %llu\n", static_cast<unsigned long long>(before.residentBytes),
              static_cast<unsigned long long>(after.residentBytes));
  return 0;
}

void smallLoad(std::size_t columnCount) {
  constexpr unsigned int rows = 1000;
  const support::TempDir directory;
  const std::string path = directory.path("small.rdbx");
  bench::writeDatabase(path, rows, bench::vocabularyColumns(columnCount));
  const std::string count = std::to_string(columnCount);
  const auto load = bench::numbers({bench::thisProgram(), "load", path, std::to_string(rows), count});
  const auto zeroFill = bench::numbers({bench::thisProgram(), "zero-fill", count});
  const double grown = load.at(1) - load.at(0);
  const double naive = zeroFill.at(1) - zeroFill.at(0);
  std::printf(
      "resident, 1000 records of %zu columns, above the empty process: load %.1f MB / zero-filled buffers "
      "%.1f MB = %.4g\n",
      columnCount, grown / megabyte, naive / megabyte, grown / naive);
}

void peak(const char* name, unsigned int rows) {
  const support::TempDir directory;
  const std::string path = directory.path("scan.rdbx");
  bench::writeDatabase(path, rows, bench::scanColumns());
  const auto load = bench::numbers({bench::thisProgram(), "load", path, std::to_string(rows), "0"});
  const double published = load.at(3);
  std::printf("peak, %u records (%s): %.1f MB / published %.1f MB = %.4g; above the empty process %.1f MB, "
              "ratio %.4g; "
              "beyond 1.02 times published: %.1f MB\n",
              rows, name, load.at(2) / megabyte, published / megabyte, load.at(2) / published,
              (load.at(2) - load.at(0)) / megabyte, (load.at(2) - load.at(0)) / published,
              (load.at(2) - 1.02 * published) / megabyte);
}

int run(int argc, char** argv) {
  if (argc == 5 && std::strcmp(argv[1], "load") == 0) {
    return reportLoad(argv[2], static_cast<unsigned int>(std::stoul(argv[3])), std::stoul(argv[4]));
  }
  if (argc == 3 && std::strcmp(argv[1], "zero-fill") == 0) {
    return reportZeroFill(std::stoul(argv[2]));
  }
  const bool small = argc == 2 && std::strcmp(argv[1], "--small") == 0;
  smallLoad(small ? 4 : 48);
  peak("whole blocks", small ? 200000 : 20000000);
  peak("a short last block", small ? 250000 : 16000000);
  return 0;
}

} // namespace

int main(int argc, char** argv) {
  return bench::runProgram("memory_bench", run, argc, argv);
}
