// SPDX-License-Identifier: BSD-3-Clause
// How the cost of a load grows with records and with columns: a table, each line from a process of its own.
// One database can have 58 columns at most: of the 61 rows of the import two share an attribute, two time
// columns exclude each other, and a colour takes the bytes of another column.
#include "bench/support/child.h"
#include "bench/support/comparison.h"
#include "bench/support/database.h"
#include "bench/support/fresh_memory.h"
#include "bench/support/program.h"
#include "tests/support/temp_dir.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace {

/// 0 columns stands for the six columns of a typical scan.
std::vector<bench::Column> columnsFor(std::size_t count) {
  return count == 0 ? bench::scanColumns() : bench::vocabularyColumns(count);
}

/// In the child: loads once and prints the seconds and the peak memory.
int reportLoad(const std::string& path) {
  const auto start = std::chrono::steady_clock::now();
  Nimbra::Grid grid;
  bench::load(path, grid);
  const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
  std::printf("%.6f %llu\n", spent.count(),
              static_cast<unsigned long long>(bench::processMemory().peakBytes));
  return 0;
}

/// In the child: reads the database file, as bytes, into fresh memory and prints the seconds.
int reportRead(const std::string& path) {
  const auto start = std::chrono::steady_clock::now();
  const auto bytes = static_cast<std::size_t>(std::filesystem::file_size(path));
  const bench::FreshMemory memory(bytes);
  bench::readWhole(path, memory.bytes(), bytes);
  const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
  std::printf("%.6f\n", spent.count());
  return 0;
}

void printLine(unsigned int rows, std::size_t columnCount, int repetitions) {
  const support::TempDir directory;
  const std::string path = directory.path("growth.rdbx");
  const std::vector<bench::Column> columns = columnsFor(columnCount);
  bench::writeDatabase(path, rows, columns);
  std::vector<double> loads;
  std::vector<double> reads;
  double peakBytes = 0;
  for (int i = 0; i <= repetitions; ++i) {
    const std::vector<double> load = bench::numbers({bench::thisProgram(), "load", path});
    const std::vector<double> read = bench::numbers({bench::thisProgram(), "read", path});
    if (i > 0) { // the first run brings the file into the page cache
      loads.push_back(load.at(0));
      reads.push_back(read.at(0));
    }
    peakBytes = std::max(peakBytes, load.at(1));
  }
  const double seconds = bench::median(loads);
  const double bytes = static_cast<double>(rows) * static_cast<double>(bench::recordBytes(columns));
  std::printf("| %u | %zu | %zu | %.4f | %.3f | %.2f | %.0f |\n", rows, columns.size(),
              bench::recordBytes(columns), seconds, bytes / seconds / 1e9, seconds / bench::median(reads),
              peakBytes / 1e6);
  std::fflush(stdout);
}

void printTable(unsigned int mostRows, int repetitions) {
  std::printf("| Records | Columns | Bytes a record | Seconds | GB a second | Over pread | Peak MB |\n"
              "|--:|--:|--:|--:|--:|--:|--:|\n");
  for (const unsigned int rows :
       {1000U, 10000U, 100000U, 1000000U, 5000000U, 5000001U, 10000000U, 20000000U, 50000000U, 100000000U}) {
    if (rows <= mostRows) {
      printLine(rows, 0, repetitions);
    }
  }
  for (const unsigned int rows : {1000U, 1000000U}) {
    for (const std::size_t columns : {1U, 2U, 6U, 12U, 24U, 48U, 58U}) {
      if (rows <= mostRows) {
        printLine(rows, columns, repetitions);
      }
    }
  }
}

int run(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[1], "load") == 0) {
    return reportLoad(argv[2]);
  }
  if (argc == 3 && std::strcmp(argv[1], "read") == 0) {
    return reportRead(argv[2]);
  }
  if (argc == 2 && std::strcmp(argv[1], "--small") == 0) {
    printTable(10000, 1);
    return 0;
  }
  printTable(argc == 2 ? static_cast<unsigned int>(std::stoul(argv[1])) : 20000000, 5);
  return 0;
}

} // namespace

int main(int argc, char** argv) {
  return bench::runProgram("growth_bench", run, argc, argv);
}
