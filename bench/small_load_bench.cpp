// SPDX-License-Identifier: BSD-3-Clause
// A thousand records of 48 columns: the cost of a load that fills a small part of its buffers, against writing zeros to
// buffers of the same sizes.
#include "bench/support/comparison.h"
#include "bench/support/database.h"
#include "loader/columns/block_size.h"
#include "tests/support/temp_dir.h"

#include <optional>

namespace {

/// The buffers of one block as vectors: all allocated, all zero.
std::vector<std::vector<unsigned char>> zeroFilledBuffers(const std::vector<bench::Column>& columns) {
  std::vector<std::vector<unsigned char>> buffers;
  for (const bench::Column& column : columns) {
    buffers.emplace_back(column.recordBytes() * Riegl::recordsPerBlock);
  }
  return buffers;
}

bench::Finding fewRecordsManyColumns() {
  constexpr unsigned int rows = 1000;
  const support::TempDir directory;
  const std::string path = directory.path("small.rdbx");
  const std::vector<bench::Column> columns = bench::vocabularyColumns(bench::records(48, 4));
  bench::writeDatabase(path, rows, columns);
  {
    Nimbra::Grid grid;
    bench::load(path, grid);
    bench::requireLoaded(grid, columns, rows);
  }
  std::optional<Nimbra::Grid> grid;
  std::vector<std::vector<unsigned char>> buffers;
  return bench::compare(
      {.run = [&] { bench::load(path, *grid); },
       .clear = [&] { grid.reset(); },
       .prepare = [&] { grid.emplace(); }},
      {.run = [&] { buffers = zeroFilledBuffers(columns); }, .clear = [&] { buffers.clear(); }});
}

} // namespace

int main(int argc, char** argv) {
  bench::addComparison("rdbx2Z4 of 1000 records, 48 columns / zero-filled buffers", fewRecordsManyColumns);
  return bench::runComparisons(argc, argv);
}
