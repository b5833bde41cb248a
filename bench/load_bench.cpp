// The point-cloud load of 66 bytes a record against reading the same bytes into fresh memory.
// docs/benchmarks.md has the targets.
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <system_error>
#include <unistd.h>

#include "bench/support/comparison.h"
#include "bench/support/database.h"
#include "bench/support/fresh_memory.h"
#include "bench/support/processors.h"
#include "tests/support/temp_dir.h"

namespace {

constexpr std::size_t bytesAtOnce = std::size_t{8} << 20;

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

void readWhole(const std::string& path, unsigned char* to, std::size_t bytes) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  for (std::size_t done = 0; done < bytes;) {
    const ssize_t got =
        pread(descriptor, to + done, std::min(bytesAtOnce, bytes - done), static_cast<off_t>(done));
    if (got <= 0) {
      throw std::system_error(errno, std::generic_category(), "reading " + path);
    }
    done += static_cast<std::size_t>(got);
  }
  close(descriptor);
}

void requireSameBytes() {
  Nimbra::Grid grid;
  bench::load(scan().database, grid);
  const bench::FreshMemory memory(scan().bytes());
  readWhole(scan().bare, memory.bytes(), scan().bytes());
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
                                   readWhole(scan().bare, memory->bytes(), scan().bytes());
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
