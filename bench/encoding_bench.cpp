// SPDX-License-Identifier: BSD-3-Clause
// Encoded files against raw ones: loading, writing, and reading a range of 1000 records.
//
// A line scan over rolling ground, 42 bytes per record: points on a grid of a millimetre, rising times, amplitude and
// reflectance in steps of 0.01 dB, deviation. Loads take 5 million records at a time from the page cache; grid and
// buffers are freed outside the timed part. A range is read from the middle of the file, and opening the file is timed
// with it; its baseline is opening alone. Each file prints its bytes per record when it is made.
#include "bench/support/comparison.h"
#include "bench/support/database.h"
#include "bench/support/processors.h"
#include "bench/support/random_values.h"
#include "container/read/cursor.h"
#include "tests/support/temp_dir.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
#include <optional>

namespace {

using container::BlockEncoding;

constexpr std::uint64_t recordsAtOnce = 1'000'000;
constexpr std::uint64_t rangeRecords = 1000;

const char* nameOf(BlockEncoding encoding) {
  static constexpr std::array names{"raw", "lz4", "deflate"};
  return names[static_cast<std::size_t>(encoding)];
}

double noise(std::uint64_t seed, std::uint64_t index, double range) {
  return bench::randomValue<double>(seed, index) * range / 1000;
}

double onGrid(double value, double step) {
  return std::nearbyint(value / step) * step;
}

/// Up to a million records, column by column.
struct Records {
  std::vector<double> points, times;
  std::vector<float> amplitudes, reflectances;
  std::vector<std::int16_t> deviations;

  std::vector<const void*> columns() const {
    return {points.data(), times.data(), amplitudes.data(), reflectances.data(), deviations.data()};
  }
};

Records recordsFrom(std::uint64_t first, std::uint64_t count) {
  Records made;
  for (std::uint64_t i = first; i < first + count; ++i) {
    const double along = static_cast<double>(i / 1000) * 0.3;
    const double across = static_cast<double>(i % 1000) * 0.25;
    const double ground = 300 + 5 * std::sin(along / 40) + 4 * std::cos(across / 25);
    made.points.insert(made.points.end(), {637000 + onGrid(along + noise(1, i, 0.1), 0.001),
                                           4851000 + onGrid(across + noise(2, i, 0.1), 0.001),
                                           onGrid(ground + noise(3, i, 0.2), 0.001)});
    made.times.push_back(30000 + onGrid(static_cast<double>(i) * 3.3e-6, 1e-7));
    made.amplitudes.push_back(static_cast<float>(onGrid(20 + noise(4, i, 10), 0.01)));
    made.reflectances.push_back(static_cast<float>(onGrid(-15 + noise(5, i, 12), 0.01)));
    made.deviations.push_back(static_cast<std::int16_t>(noise(6, i, 30)));
  }
  return made;
}

/// Writes records that `next` gives a million at a time.
template <class Next>
void write(const std::string& path, BlockEncoding encoding, std::uint64_t records, Next&& next) {
  using container::ElementType;
  container::WriterSettings settings;
  settings.encoding = encoding;
  container::Writer writer(path, settings);
  writer.addAttribute({"riegl.xyz", ElementType::float64, 3});
  writer.addAttribute({"riegl.timestamp", ElementType::float64});
  writer.addAttribute({"riegl.amplitude", ElementType::float32});
  writer.addAttribute({"riegl.reflectance", ElementType::float32});
  writer.addAttribute({"riegl.deviation", ElementType::int16});
  for (std::uint64_t first = 0; first < records; first += recordsAtOnce) {
    const std::uint64_t count = std::min(recordsAtOnce, records - first);
    const Records& part = next(first, count);
    writer.write(count, part.columns());
  }
  writer.finish();
}

std::uint64_t recordCount() {
  return bench::records(12'000'000, 50'000);
}

const support::TempDir& folder() {
  static const support::TempDir made;
  return made;
}

/// The path of the scan in an encoding, which is written when it is first asked for.
const std::string& fileOf(BlockEncoding encoding) {
  static std::map<BlockEncoding, std::string> files;
  std::string& path = files[encoding];
  if (path.empty()) {
    path = folder().path(std::string(nameOf(encoding)) + ".rdbx");
    Records part;
    write(path, encoding, recordCount(), [&](std::uint64_t first, std::uint64_t count) -> const Records& {
      return part = recordsFrom(first, count);
    });
    const auto bytes = static_cast<double>(std::filesystem::file_size(path));
    std::printf("%s: %.3f bytes per record\n", nameOf(encoding), bytes / static_cast<double>(recordCount()));
  }
  return path;
}

void requireSameGrid(BlockEncoding encoding) {
  Nimbra::Grid raw, encoded;
  bench::load(fileOf(BlockEncoding::raw), raw);
  bench::load(fileOf(encoding), encoded);
  for (const char* field : {"Positions", "GPSTime", "Amplitude", "Reflectance", "Deviation"}) {
    const std::vector<bench::Bytes> expected = bench::fragmentsOf(raw, field);
    const std::vector<bench::Bytes> found = bench::fragmentsOf(encoded, field);
    bench::require(expected.size() == found.size(), field);
    for (std::size_t i = 0; i < expected.size(); ++i) {
      bench::require(expected[i].count == found[i].count &&
                         std::memcmp(expected[i].first, found[i].first, found[i].count) == 0,
                     field);
    }
  }
}

bench::Side loading(BlockEncoding encoding, std::optional<Nimbra::Grid>& grid) {
  return {.run = [&grid, encoding] { bench::load(fileOf(encoding), *grid); },
          .clear = [&grid] { grid.reset(); },
          .prepare = [&grid] { grid.emplace(); }};
}

bench::Finding compareLoads(BlockEncoding encoding) {
  requireSameGrid(encoding);
  std::optional<Nimbra::Grid> grid;
  return bench::compare(loading(encoding, grid), loading(BlockEncoding::raw, grid));
}

/// Writing of a million records that are there already, ten times.
bench::Finding compareWriting(BlockEncoding encoding) {
  const std::uint64_t records = bench::records(10'000'000, 50'000);
  const Records part = recordsFrom(0, std::min(recordsAtOnce, records));
  const std::string path = folder().path("written.rdbx");
  const auto writing = [&](BlockEncoding as) {
    return bench::Side{.run =
                           [&, as] {
                             write(path, as, records,
                                   [&](std::uint64_t, std::uint64_t) -> const Records& { return part; });
                           },
                       .clear = [&] { std::filesystem::remove(path); }};
  };
  return bench::compare(writing(encoding), writing(BlockEncoding::raw));
}

/// Points of records in the middle, and all other columns if wanted.
struct Range {
  std::vector<double> points = std::vector<double>(3 * rangeRecords),
                      times = std::vector<double>(rangeRecords);
  std::vector<float> amplitudes = std::vector<float>(rangeRecords), reflectances = amplitudes;
  std::vector<std::int16_t> deviations = std::vector<std::int16_t>(rangeRecords);

  static std::uint64_t first() { return recordCount() / 2 + recordCount() / 100; }

  void read(BlockEncoding encoding, bool takesAll) {
    using container::ElementType;
    const container::Database database(fileOf(encoding));
    container::Cursor cursor(database);
    cursor.next(first());
    cursor.bind("riegl.xyz", ElementType::float64, points.data());
    if (takesAll) {
      cursor.bind("riegl.timestamp", ElementType::float64, times.data());
      cursor.bind("riegl.amplitude", ElementType::float32, amplitudes.data());
      cursor.bind("riegl.reflectance", ElementType::float32, reflectances.data());
      cursor.bind("riegl.deviation", ElementType::int16, deviations.data());
    }
    bench::require(cursor.next(rangeRecords) == rangeRecords, "the number of records in a range");
  }
};

bench::Finding compareRange(BlockEncoding encoding, bool takesAll) {
  Range range;
  range.read(encoding, takesAll);
  const Records expected = recordsFrom(Range::first(), rangeRecords);
  bench::require(range.points == expected.points, "points of a range");
  bench::require(!takesAll || range.deviations == expected.deviations, "deviations of a range");
  return bench::compare({.run = [&] { range.read(encoding, takesAll); }},
                        {.run = [&] { const container::Database database(fileOf(encoding)); }});
}

void addFor(BlockEncoding encoding) {
  const std::string name = nameOf(encoding);
  bench::addComparison("load " + name + " / load raw, one client thread", [encoding] {
    const bench::OneProcessor pinned;
    return compareLoads(encoding);
  });
  bench::addComparison("load " + name + " / load raw, two client threads",
                       [encoding] { return compareLoads(encoding); });
  bench::addComparison("write 10 million records, " + name + " / raw",
                       [encoding] { return compareWriting(encoding); });
  bench::addComparison("open and read 1000 points, " + name + " / open",
                       [encoding] { return compareRange(encoding, false); });
  bench::addComparison("open and read 1000 records of all columns, " + name + " / open",
                       [encoding] { return compareRange(encoding, true); });
}

} // namespace

int main(int argc, char** argv) {
  for (const BlockEncoding encoding : {BlockEncoding::raw, BlockEncoding::lz4, BlockEncoding::deflate}) {
    addFor(encoding);
  }
  return bench::runComparisons(argc, argv);
}
