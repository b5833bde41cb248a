// The point-cloud load of 66 bytes a record against reading the same bytes into fresh memory.
// docs/benchmarks.md has the targets.
#include <memory>
#include <optional>

#include "bench/support/comparison.h"
#include "bench/support/database.h"
#include "bench/support/fresh_memory.h"
#include "bench/support/processors.h"
#include "tests/support/temp_dir.h"

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

bench::Finding compareLoad() {
  requireSameBytes();
  std::optional<Nimbra::Grid> grid;
  std::unique_ptr<bench::FreshMemory> memory;
  const bench::Side path{.run = [&] { bench::load(scan().database, *grid); },
                         .clear = [&] { grid.reset(); },
                         .prepare = [&] { grid.emplace(); }};
  const bench::Side baseline{.run =
                                 [&] {
                                   memory = std::make_unique<bench::FreshMemory>(scan().bytes());
                                   bench::readWhole(scan().bare, memory->bytes(), scan().bytes());
                                 },
                             .clear = [&] { memory.reset(); }};
  return bench::compare(path, baseline);
}

} // namespace

int main(int argc, char** argv) {
  bench::addComparison("rdbx2Z4, one client thread / pread", [] {
    const bench::OneProcessor pinned;
    return compareLoad();
  });
  bench::addComparison("rdbx2Z4, two client threads / pread on one", compareLoad);
  return bench::runComparisons(argc, argv);
}
