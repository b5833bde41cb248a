// SPDX-License-Identifier: BSD-3-Clause
// The library's own share of a load: its sources over a client that copies from memory, against the same copies into
// buffers made in the same way without the library: vectors of 5000000 elements through `makeFreshElements`, one more set
// than there are blocks, as a load makes.
#include <rdb2nimbra/rdb2nimbra.h>

#include "arrays/quillon/physical_space.h"
#include "bench/in_memory/rdb.h"
#include "bench/support/comparison.h"
#include "bench/support/random_values.h"
#include "loader/columns/block_size.h"
#include "model/nimbra/grid.h"
#include "model/torvel/references/fresh_elements.h"

#include <map>
#include <memory>
#include <optional>
#include <variant>

namespace {

using Quillon::PhysicalSpace::point;
using Buffer = std::variant<std::vector<point>, std::vector<double>, std::vector<float>, std::vector<short>>;

/// A column of a typical scan: 66 bytes per record in all.
struct Column {
  const char* attribute;
  Buffer (*make)();
  std::size_t recordBytes;
  unsigned type; ///< of its elements, as the client numbers them
  std::vector<unsigned char> bytes{};
};

/// A buffer as the load makes it.
template <class T>
Buffer freshBuffer() {
  std::vector<T> elements;
  Torvel::makeFreshElements(elements, Riegl::recordsPerBlock);
  return elements;
}

template <class T>
Column column(const char* attribute, unsigned type) {
  return {attribute, [] { return freshBuffer<T>(); }, sizeof(T), type};
}

constexpr const char* path = "memory";

/// The columns in the order in which the client fills them.
std::vector<Column> columnsFromSeed(std::uint64_t rows) {
  std::vector<Column> columns{column<float>("riegl.amplitude", 9),   column<short>("riegl.deviation", 4),
                              column<float>("riegl.reflectance", 9), column<double>("riegl.timestamp", 10),
                              column<point>("riegl.xyz", 10),        column<point>("riegl.xyz_socs", 10)};
  inMemory::Database& database = inMemory::databases()[path];
  for (std::size_t i = 0; i < columns.size(); ++i) {
    const std::size_t bytes = rows * columns[i].recordBytes;
    // Real numbers below 1000 are valid time stamps of one day; for all other columns any bytes will do.
    const std::vector<double> values = bench::randomValues<double>(i, 0, (bytes + 7) / 8);
    columns[i].bytes.resize(bytes);
    std::memcpy(columns[i].bytes.data(), values.data(), bytes);
    const std::size_t length = columns[i].recordBytes / support::elementBytes(columns[i].type);
    database.columns[columns[i].attribute] = {columns[i].bytes.data(), columns[i].type,
                                              static_cast<unsigned>(length)};
  }
  database.records = rows;
  return columns;
}

/// The work of the load without the library: for each block a set of buffers, filled, and a last set that is not filled.
class BareLoad {
 public:
  BareLoad(const std::vector<Column>& columnsToCopy, std::uint64_t rowCount)
      : columns(columnsToCopy), rows(rowCount) {}

  void run() {
    makeSet();
    for (std::uint64_t first = 0; first < rows; first += Riegl::recordsPerBlock) {
      fillLastSet(first, std::min<std::uint64_t>(Riegl::recordsPerBlock, rows - first));
      makeSet();
    }
    sets.pop_back();
  }
  void clear() { sets.clear(); }
  const std::vector<std::vector<Buffer>>& blocks() const { return sets; }

 private:
  void makeSet() {
    std::vector<Buffer>& set = sets.emplace_back();
    for (const Column& column : columns) {
      set.push_back(column.make());
    }
  }
  void fillLastSet(std::uint64_t first, std::uint64_t count) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      std::visit(
          [&](auto& elements) {
            const std::size_t bytes = columns[i].recordBytes;
            std::memcpy(elements.data(), columns[i].bytes.data() + first * bytes, count * bytes);
            elements.resize(count);
            Torvel::releaseUnusedPages(elements);
          },
          sets.back()[i]);
    }
  }

  const std::vector<Column>& columns;
  std::uint64_t rows;
  std::vector<std::vector<Buffer>> sets;
};

void load(Nimbra::Grid& grid) {
  const std::string failure = Riegl::rdbx2Z4(path, grid, 0, false, nullptr);
  bench::require(failure.empty(), failure);
}

const void* fieldBytes(const Nimbra::Grid& grid, const std::string& attribute, std::size_t block) {
  static const std::map<std::string, std::string> fields{
      {"riegl.amplitude", "Amplitude"},     {"riegl.deviation", "Deviation"},
      {"riegl.reflectance", "Reflectance"}, {"riegl.timestamp", "GPSTime"},
      {"riegl.xyz", "Positions"},           {"riegl.xyz_socs", "Positions"}};
  const auto representation = grid.getCartesianRepresentation(
      attribute == "riegl.xyz_socs" ? "ScannerCoordinateSystem" : "StandardCartesianChart3D");
  return representation->field(fields.at(attribute))->array("Fragment_" + std::to_string(block))->rawData();
}

void requireSameBlocks(const std::vector<Column>& columns, BareLoad& bare) {
  Nimbra::Grid grid;
  load(grid);
  bare.run();
  for (std::size_t block = 0; block < bare.blocks().size(); ++block) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      std::visit(
          [&](const auto& elements) {
            bench::require(std::memcmp(fieldBytes(grid, columns[i].attribute, block), elements.data(),
                                       elements.size() * columns[i].recordBytes) == 0,
                           columns[i].attribute);
          },
          bare.blocks()[block][i]);
    }
  }
  bare.clear();
}

bench::Finding ownShare() {
  const std::uint64_t rows = bench::records(20000000, 100000);
  const std::vector<Column> columns = columnsFromSeed(rows);
  BareLoad bare(columns, rows);
  requireSameBlocks(columns, bare);
  std::optional<Nimbra::Grid> grid;
  return bench::compare(
      {.run = [&] { load(*grid); }, .clear = [&] { grid.reset(); }, .prepare = [&] { grid.emplace(); }},
      {.run = [&] { bare.run(); }, .clear = [&] { bare.clear(); }});
}

} // namespace

int main(int argc, char** argv) {
  bench::addComparison("rdbx2Z4 over memory / bare copies", ownShare);
  return bench::runComparisons(argc, argv);
}
