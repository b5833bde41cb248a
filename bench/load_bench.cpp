// SPDX-License-Identifier: BSD-3-Clause
// The point-cloud load of 66 bytes per record against reading the same bytes into fresh memory.
//
// Baseline: the columns lie in a bare file, 66 bytes per record. `pread` takes 8 MB at a time into a fresh anonymous
// mapping with MADV_HUGEPAGE. Both files are in the page cache. Mapping is timed, unmapping is not; the grid of a load is
// freed outside the timed part too, so each run starts with fresh buffers.
// One client thread: the benchmark, baseline included, binds itself to one processor; the client then opens one reader.
//
// With all portable paths (docs/build.md) the load takes 4.74 times the baseline on one client thread. What brought the
// ratio down, each step measured before it was kept: pages of fresh buffers are dropped instead of zeroed; checksums fold
// wide registers; SQLite keeps six pages, which stay in the second-level cache (1.71 to 1.64); blocks with a checksum
// are read past SQLite's pages (1.62 to 1.52); a million records per block instead of 125,000 (1.55 to 1.41); checksums
// move half of the bytes before they fold (1.44 to 1.33); small pages are requested many at a time (1.33 to 1.28).
// Tried and left out: MADV_COLLAPSE for a huge page that two buffers share, and pieces of 64 or 128 KB between read and
// checksum instead of 256 KB. A third of the remaining time is the kernel clearing pages, three tenths its copy out of the
// page cache, both of which the baseline has too; checksums take some 8 %.
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
