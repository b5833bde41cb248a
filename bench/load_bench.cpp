// SPDX-License-Identifier: BSD-3-Clause
// The point-cloud load of 66 bytes a record against reading the same bytes into fresh memory.
// docs/benchmarks.md has the targets.
#include "bench/support/comparison.h"
#include "bench/support/database.h"
#include "bench/support/fresh_memory.h"
#include "bench/support/processors.h"
#include "tests/support/temp_dir.h"

#include <future>
#include <memory>
#include <optional>

namespace {

/// The scan as a database, and its columns one after the other in a bare file.
class Scan {
 public:
  Scan() : rows(bench::records(20000000, 300000)), columns(bench::scanColumns()) {
    bench::writeDatabase(database, rows, columns, bare);
  }
  std::size_t bytes() const { return rows * bench::recordBytes(columns); }

 private:
  support::TempDir directory;

 public:
  const unsigned int rows;
  const std::vector<bench::Column> columns;
  const std::string database = directory.path("scan.rdbx");
  const std::string bare = directory.path("columns.bin");
};

const Scan& scan() {
  static const Scan made;
  return made;
}

void requireSameBytes() {
  Nimbra::Grid grid;
  bench::load(scan().database, grid);
  const bench::FreshMemory memory(scan().bytes());
  bench::readWhole(scan().bare, memory.bytes(), scan().bytes());
  const unsigned char* expected = memory.bytes();
  for (const bench::Column& column : scan().columns) {
    bench::require(bench::holds(grid, column, expected, scan().rows), column.attribute);
    expected += scan().rows * column.recordBytes();
  }
}

/// Reading the bare file into fresh memory, on one thread or two.
bench::Side bareReading(std::unique_ptr<bench::FreshMemory>& memory, std::size_t threads) {
  return {.run =
              [&memory, threads] {
                memory = std::make_unique<bench::FreshMemory>(scan().bytes());
                std::vector<std::future<void>> others;
                for (std::size_t thread = 1; thread < threads; ++thread) {
                  others.push_back(std::async(std::launch::async, bench::readPieces, scan().bare,
                                              memory->bytes(), scan().bytes(), thread, threads));
                }
                bench::readPieces(scan().bare, memory->bytes(), scan().bytes(), 0, threads);
                for (std::future<void>& other : others) {
                  other.get();
                }
              },
          .clear = [&memory] { memory.reset(); }};
}

bench::Finding compareLoad() {
  requireSameBytes();
  std::optional<Nimbra::Grid> grid;
  std::unique_ptr<bench::FreshMemory> memory;
  const bench::Side path{.run = [&] { bench::load(scan().database, *grid); },
                         .clear = [&] { grid.reset(); },
                         .prepare = [&] { grid.emplace(); }};
  return bench::compare(path, bareReading(memory, 1));
}

/// What a second thread can gain on this machine, whatever a program does with it.
bench::Finding compareReading() {
  std::unique_ptr<bench::FreshMemory> memory;
  return bench::compare(bareReading(memory, 2), bareReading(memory, 1));
}

} // namespace

int main(int argc, char** argv) {
  bench::addComparison("rdbx2Z4, one client thread / pread", [] {
    const bench::OneProcessor pinned;
    return compareLoad();
  });
  bench::addComparison("rdbx2Z4, two client threads / pread on one", compareLoad);
  bench::addComparison("pread on two threads / pread on one", compareReading);
  return bench::runComparisons(argc, argv);
}
