// SPDX-License-Identifier: BSD-3-Clause
// Loads whose columns are converted, against loads of the same values stored in the type that a load asks for.
// A conversion changes the number of bytes, so no other load moves the same bytes on both sides. The baseline is the load
// without conversion that moves the wider of the two: float64 for all three. Against float32 stored as float32, half the
// bytes, float64 loaded as float32 takes 1.73 times as long.
#include "bench/support/comparison.h"
#include "bench/support/database.h"
#include "bench/support/processors.h"
#include "bench/support/random_values.h"
#include "tests/support/temp_dir.h"

#include <algorithm>
#include <cstring>
#include <optional>

namespace {

using container::Attribute;
using container::Writer;

constexpr std::uint64_t rowsAtOnce = 125000;

/// A database of one column whose stored values follow from `Source` and the rule.
template <class Source, class Stored>
void writeColumn(const std::string& path, const Attribute& spec, std::uint64_t rows, Stored (*rule)(Source)) {
  Writer writer(path);
  writer.addAttribute(spec);
  for (std::uint64_t first = 0; first < rows; first += rowsAtOnce) {
    const std::uint64_t count = std::min(rowsAtOnce, rows - first);
    std::vector<Stored> values;
    for (std::uint64_t i = first * spec.length; i < (first + count) * spec.length; ++i) {
      values.push_back(rule(bench::randomValue<Source>(1, i)));
    }
    writer.write(count, {values.data()});
  }
  writer.finish();
}

/// The same values twice: in the type that a load asks for, and in a type that the load converts.
struct Pair {
  support::TempDir directory;
  std::string asAsked = directory.path("as-asked.rdbx");
  std::string converted = directory.path("converted.rdbx");
};

void requireSameField(const Pair& pair, const std::string& field) {
  Nimbra::Grid left;
  Nimbra::Grid right;
  bench::load(pair.asAsked, left);
  bench::load(pair.converted, right);
  const auto expected = bench::fragmentsOf(left, field);
  const auto found = bench::fragmentsOf(right, field);
  bench::require(expected.size() == found.size() && !found.empty(), "fragments of " + field);
  for (std::size_t i = 0; i < found.size(); ++i) {
    bench::require(found[i].count == expected[i].count &&
                       std::memcmp(found[i].first, expected[i].first, found[i].count) == 0,
                   "values of " + field);
  }
}

bench::Finding compareTimes(const Pair& pair) {
  std::optional<Nimbra::Grid> grid;
  const auto side = [&](const std::string& path) {
    return bench::Side{.run = [&grid, path] { bench::load(path, *grid); },
                       .clear = [&] { grid.reset(); },
                       .prepare = [&] { grid.emplace(); }};
  };
  return bench::compare(side(pair.converted), side(pair.asAsked));
}

bench::Finding compareLoads(const Pair& pair, const std::string& field) {
  requireSameField(pair, field);
  return compareTimes(pair);
}

Attribute spec(const std::string& name, bench::ElementType type, unsigned int length, double scale = 1) {
  Attribute made;
  made.name = name;
  made.type = type;
  made.length = length;
  made.scale = scale;
  return made;
}

constexpr double millimetre = 0.001;

bench::Finding scaledIntegers() {
  const Pair pair;
  const unsigned int rows = bench::records(20000000, 100000);
  writeColumn<std::int32_t, std::int32_t>(pair.converted,
                                          spec("riegl.xyz", bench::ElementType::int32, 3, millimetre), rows,
                                          [](std::int32_t value) { return value; });
  writeColumn<std::int32_t, double>(
      pair.asAsked, spec("riegl.xyz", bench::ElementType::float64, 3), rows,
      [](std::int32_t value) { return static_cast<double>(value) * millimetre; });
  return compareLoads(pair, "Positions");
}

bench::Finding floatsAskedAsDoubles() {
  const Pair pair;
  const unsigned int rows = bench::records(20000000, 100000);
  writeColumn<float, float>(pair.converted, spec("riegl.timestamp", bench::ElementType::float32, 1), rows,
                            [](float value) { return value; });
  writeColumn<float, double>(pair.asAsked, spec("riegl.timestamp", bench::ElementType::float64, 1), rows,
                             [](float value) { return static_cast<double>(value); });
  return compareLoads(pair, "GPSTime");
}

bench::Finding doublesAskedAsFloats() {
  const Pair pair;
  const unsigned int rows = bench::records(20000000, 100000);
  writeColumn<double, double>(pair.converted, spec("riegl.amplitude", bench::ElementType::float64, 1), rows,
                              [](double value) { return value; });
  writeColumn<double, float>(pair.asAsked, spec("riegl.amplitude", bench::ElementType::float32, 1), rows,
                             [](double value) { return static_cast<float>(value); });
  return compareLoads(pair, "Amplitude");
}

/// Raises unless each value of "Amplitude" on the left is the rounded value of "GPSTime" on the right.
void requireRounded(const Nimbra::Grid& left, const Nimbra::Grid& right) {
  const auto floats = bench::fragmentsOf(left, "Amplitude");
  const auto doubles = bench::fragmentsOf(right, "GPSTime");
  bench::require(floats.size() == doubles.size() && !floats.empty(), "fragments");
  for (std::size_t i = 0; i < floats.size(); ++i) {
    const std::size_t count = floats[i].count / sizeof(float);
    const auto* const rounded = reinterpret_cast<const float*>(floats[i].first);
    const auto* const exact = reinterpret_cast<const double*>(doubles[i].first);
    bench::require(
        doubles[i].count == count * sizeof(double) &&
            std::equal(rounded, rounded + count, exact,
                       [](float found, double value) { return found == static_cast<float>(value); }),
        "rounded values");
  }
}

bench::Finding doublesAskedAsFloatsOverDoubles() {
  const Pair pair;
  const unsigned int rows = bench::records(20000000, 100000);
  const auto unchanged = [](double value) { return value; };
  writeColumn<double, double>(pair.converted, spec("riegl.amplitude", bench::ElementType::float64, 1), rows,
                              unchanged);
  writeColumn<double, double>(pair.asAsked, spec("riegl.timestamp", bench::ElementType::float64, 1), rows,
                              unchanged);
  {
    Nimbra::Grid floats;
    Nimbra::Grid doubles;
    bench::load(pair.converted, floats);
    bench::load(pair.asAsked, doubles);
    requireRounded(floats, doubles);
  }
  return compareTimes(pair);
}

bench::Finding onOneProcessor(bench::Finding (*measure)()) {
  const bench::OneProcessor pinned;
  return measure();
}

} // namespace

int main(int argc, char** argv) {
  bench::addComparison("int32 with scale as float64 / float64, one client thread",
                       [] { return onOneProcessor(scaledIntegers); });
  bench::addComparison("float32 as float64 / float64, one client thread",
                       [] { return onOneProcessor(floatsAskedAsDoubles); });
  bench::addComparison("float64 as float32 / float32, one client thread",
                       [] { return onOneProcessor(doublesAskedAsFloats); });
  bench::addComparison("float64 as float32 / the same bytes as float64, one client thread",
                       [] { return onOneProcessor(doublesAskedAsFloatsOverDoubles); });
  bench::addComparison("int32 with scale as float64 / float64, two client threads", scaledIntegers);
  bench::addComparison("float32 as float64 / float64, two client threads", floatsAskedAsDoubles);
  bench::addComparison("float64 as float32 / float32, two client threads", doublesAskedAsFloats);
  bench::addComparison("float64 as float32 / the same bytes as float64, two client threads",
                       doublesAskedAsFloatsOverDoubles);
  return bench::runComparisons(argc, argv);
}
