// SPDX-License-Identifier: BSD-3-Clause
// Makes databases from seeds and checks what a load has put on the grid.
#include "bench/support/database.h"

#include <rdb2nimbra/rdb2nimbra.h>

#include "bench/support/random_values.h"
#include "loader/pointcloud/rdbx_rows.h"
#include "model/torvel/references/chunk_base.h"
#include "platform/client/element_type.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <set>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

namespace bench {

namespace {

constexpr std::uint64_t rowsAtOnce = 125000;

/// A file of bare columns; each write names its place in the file.
class BareFile {
 public:
  explicit BareFile(const std::string& path)
      : descriptor(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600)) {
    if (descriptor < 0) {
      throw std::system_error(errno, std::generic_category(), path);
    }
  }
  BareFile(const BareFile&) = delete;
  BareFile& operator=(const BareFile&) = delete;
  ~BareFile() {
    fsync(descriptor);
    close(descriptor);
  }
  void write(const std::vector<unsigned char>& bytes, std::uint64_t offset) {
    if (pwrite(descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset)) !=
        static_cast<ssize_t>(bytes.size())) {
      throw std::system_error(errno, std::generic_category(), "writing bare columns");
    }
  }

 private:
  int descriptor;
};

template <class T>
std::vector<unsigned char> randomBytes(std::uint64_t seed, std::uint64_t first, std::size_t count) {
  const std::vector<T> values = randomValues<T>(seed, first, count);
  std::vector<unsigned char> bytes(count * sizeof(T));
  std::memcpy(bytes.data(), values.data(), bytes.size());
  return bytes;
}

bool isOwnColumn(const Riegl::RdbxRow& row) {
  // Left out: the colours, whose bytes are another attribute's, and the second of the two time columns.
  return row.attribute.element != Riegl::ElementType::rgba &&
         std::strcmp(row.attribute.name, "riegl.shot_timestamp_hr") != 0;
}

/// Whether the field shows other values than the column's: a later column of the same field takes its place, and of
/// the two fields of one attribute only the later is filled.
bool isReplaced(const std::vector<Column>& columns, std::size_t index) {
  const auto sameField = [&](const Column& later) {
    return later.field == columns[index].field && later.inChart == columns[index].inChart;
  };
  return columns[index].attribute == "riegl.target_count" ||
         std::any_of(columns.begin() + static_cast<std::ptrdiff_t>(index) + 1, columns.end(), sameField);
}

Column columnOf(const Riegl::RdbxRow& row) {
  Column column;
  column.attribute = row.attribute.name;
  column.field = row.field;
  column.type = *riegl::rdb::embedded::elementTypeOf(
      riegl::rdb::pointcloud::DataType(Riegl::dataTypeOf(row.attribute.element)));
  column.length = row.attribute.mostValues;
  column.inChart = row.toChart;
  return column;
}

} // namespace

std::vector<Column> scanColumns() {
  return {{"riegl.xyz", "Positions", ElementType::float64, 3, true},
          {"riegl.timestamp", "GPSTime", ElementType::float64, 1, true},
          {"riegl.xyz_socs", "Positions", ElementType::float64, 3, false},
          {"riegl.amplitude", "Amplitude", ElementType::float32, 1, true},
          {"riegl.reflectance", "Reflectance", ElementType::float32, 1, true},
          {"riegl.deviation", "Deviation", ElementType::int16, 1, true}};
}

std::vector<Column> vocabularyColumns(std::size_t count) {
  std::vector<Column> columns;
  std::set<std::string> names;
  for (const Riegl::RdbxRow& row : Riegl::rdbxRows) {
    if (columns.size() < count && isOwnColumn(row) && names.insert(row.attribute.name).second) {
      columns.push_back(columnOf(row));
    }
  }
  return columns;
}

std::size_t recordBytes(const std::vector<Column>& columns) {
  std::size_t bytes = 0;
  for (const Column& column : columns) {
    bytes += column.recordBytes();
  }
  return bytes;
}

std::vector<unsigned char> columnBytes(const Column& column, std::size_t index, std::uint64_t first,
                                       std::uint64_t rows) {
  const std::uint64_t begin = first * column.length;
  const auto count = static_cast<std::size_t>(rows * column.length);
  switch (column.type) {
  case ElementType::float64:
    return randomBytes<double>(index, begin, count);
  case ElementType::float32:
    return randomBytes<float>(index, begin, count);
  case ElementType::int8:
  case ElementType::uint8:
    return randomBytes<std::uint8_t>(index, begin, count);
  case ElementType::int16:
  case ElementType::uint16:
    return randomBytes<std::uint16_t>(index, begin, count);
  case ElementType::int32:
  case ElementType::uint32:
    return randomBytes<std::uint32_t>(index, begin, count);
  case ElementType::int64:
  case ElementType::uint64:
    break;
  }
  return randomBytes<std::uint64_t>(index, begin, count);
}

void writeDatabase(const std::string& path, std::uint64_t rows, const std::vector<Column>& columns,
                   const std::string& barePath) {
  container::Writer writer(path);
  for (const Column& column : columns) {
    container::Attribute spec;
    spec.name = column.attribute;
    spec.type = column.type;
    spec.length = column.length;
    writer.addAttribute(spec);
  }
  std::unique_ptr<BareFile> bare = barePath.empty() ? nullptr : std::make_unique<BareFile>(barePath);
  for (std::uint64_t first = 0; first < rows; first += rowsAtOnce) {
    const std::uint64_t count = std::min(rowsAtOnce, rows - first);
    std::vector<std::vector<unsigned char>> pieces;
    std::vector<const void*> places;
    std::uint64_t columnStart = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      pieces.push_back(columnBytes(columns[i], i, first, count));
      places.push_back(pieces.back().data());
      if (bare) {
        bare->write(pieces.back(), columnStart + first * columns[i].recordBytes());
      }
      columnStart += rows * columns[i].recordBytes();
    }
    writer.write(count, places);
  }
  writer.finish();
}

void load(const std::string& path, Nimbra::Grid& grid) {
  const std::string failure = Riegl::rdbx2Z4(path, grid, 0, true, nullptr);
  if (!failure.empty()) {
    throw std::runtime_error(failure);
  }
}

std::vector<Bytes> fragmentsOf(const Nimbra::Grid& grid, const std::string& field, bool inChart) {
  const auto representation =
      grid.getCartesianRepresentation(inChart ? "StandardCartesianChart3D" : "ScannerCoordinateSystem");
  const Nimbra::Field::Pointer found =
      representation ? representation->field(field) : Nimbra::Field::Pointer();
  if (!found) {
    throw std::runtime_error("expected a field \"" + field + "\", found none");
  }
  std::vector<Bytes> fragments;
  for (const auto& fragment : found->fragments()) {
    const auto chunk = fragment.array()->chunkBase();
    fragments.push_back(
        {static_cast<const unsigned char*>(chunk->data()), chunk->elementCount() * chunk->elementBytes()});
  }
  return fragments;
}

bool holds(const Nimbra::Grid& grid, const Column& column, const unsigned char* expected,
           std::uint64_t rows) {
  std::uint64_t bytesLeft = rows * column.recordBytes();
  for (const Bytes& fragment : fragmentsOf(grid, column.field, column.inChart)) {
    if (fragment.count > bytesLeft || std::memcmp(fragment.first, expected, fragment.count) != 0) {
      return false;
    }
    expected += fragment.count;
    bytesLeft -= fragment.count;
  }
  return bytesLeft == 0;
}

void requireLoaded(const Nimbra::Grid& grid, const std::vector<Column>& columns, std::uint64_t rows) {
  for (std::size_t i = 0; i < columns.size(); ++i) {
    // The intersections of hydrography keep the first `rows` of their values, not all three per record.
    const bool cut = columns[i].attribute.find("hydro_intersection") != std::string::npos;
    Column kept = columns[i];
    kept.length = cut ? 1 : kept.length;
    const std::vector<unsigned char> expected = columnBytes(columns[i], i, 0, rows);
    if (!isReplaced(columns, i) && !holds(grid, kept, expected.data(), rows)) {
      throw std::runtime_error("results differ: column \"" + columns[i].attribute + "\"");
    }
  }
}

} // namespace bench
