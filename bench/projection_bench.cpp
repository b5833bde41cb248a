// SPDX-License-Identifier: BSD-3-Clause
// Proj::transform against PROJ's own array call on one thread, and trajectories of two lengths.
// A ratio of processor times near 1 means that the second thread adds no work.
#include <rdb2nimbra/rdb2nimbra.h>

#include "bench/support/comparison.h"
#include "bench/support/database.h"
#include "bench/support/random_values.h"
#include "platform/transformation/transform.h"
#include "tests/support/changed_variable.h"
#include "tests/support/temp_dir.h"

#include <cstring>
#include <memory>
#include <optional>
#include <proj.h>

namespace {

using Points = std::vector<Quillon::PhysicalSpace::point>;

constexpr const char* degrees = "+proj=latlong";
constexpr const char* zone33 = "epsg:32633";
constexpr unsigned int blockPoints = 5000000;

/// Points inside the zone, all different.
Points pointsOfTheZone(std::size_t count) {
  Points points(count);
  for (std::size_t i = 0; i < count; ++i) {
    points[i][0] = 12 + 0.006 * bench::randomValue<double>(1, i);
    points[i][1] = 40 + 0.020 * bench::randomValue<double>(2, i);
    points[i][2] = bench::randomValue<double>(3, i);
  }
  return points;
}

/// PROJ called directly, on the calling thread.
class BareProjection {
 public:
  BareProjection() : context(proj_context_create(), proj_context_destroy), steps(nullptr, proj_destroy) {
    const std::unique_ptr<PJ, PJ* (*)(PJ*)> found(
        proj_create_crs_to_crs(context.get(), degrees, zone33, nullptr), proj_destroy);
    steps.reset(proj_normalize_for_visualization(context.get(), found.get()));
    bench::require(steps != nullptr, "PROJ has no operation");
  }
  void apply(Points& points) const {
    constexpr std::size_t stride = sizeof(Points::value_type);
    double* const first = points.front().begin();
    proj_trans_generic(steps.get(), PJ_FWD, first, stride, points.size(), first + 1, stride, points.size(),
                       first + 2, stride, points.size(), nullptr, 0, 0);
  }

 private:
  std::unique_ptr<PJ_CONTEXT, PJ_CONTEXT* (*)(PJ_CONTEXT*)> context;
  std::unique_ptr<PJ, PJ* (*)(PJ*)> steps;
};

void transform(Points& points) {
  const std::string failure = Proj::transform(degrees, zone33, points, false);
  bench::require(failure.empty(), failure);
}

bool sameBits(const Points& left, const Points& right) {
  return std::memcmp(left.data(), right.data(), left.size() * sizeof(Points::value_type)) == 0;
}

bench::Finding againstTheArrayCall() {
  const Points source = pointsOfTheZone(bench::records(blockPoints, 100000));
  const BareProjection bare;
  Points points = source;
  Points barePoints = source;
  transform(points);
  bare.apply(barePoints);
  bench::require(sameBits(points, barePoints) && !sameBits(points, source), "positions");
  return bench::compare({.run = [&] { transform(points); }, .prepare = [&] { points = source; }},
                        {.run = [&] { bare.apply(barePoints); }, .prepare = [&] { barePoints = source; }});
}

bench::Finding shortBlock() {
  constexpr std::size_t used = 1000;
  const Points full = pointsOfTheZone(bench::records(blockPoints, 100000));
  Points mostlyZero(full.begin(), full.begin() + used);
  mostlyZero.resize(full.size());
  std::memset(mostlyZero[used].begin(), 0, (full.size() - used) * sizeof(Points::value_type));
  Points shortPoints = mostlyZero;
  Points fullPoints = full;
  transform(shortPoints);
  transform(fullPoints);
  Points expected = mostlyZero;
  BareProjection().apply(expected);
  bench::require(sameBits(shortPoints, expected) && std::memcmp(shortPoints.data(), fullPoints.data(),
                                                                used * sizeof(Points::value_type)) == 0,
                 "positions");
  return bench::compare(
      {.run = [&] { transform(shortPoints); }, .prepare = [&] { shortPoints = mostlyZero; }},
      {.run = [&] { transform(fullPoints); }, .prepare = [&] { fullPoints = full; }});
}

/// A flight over the zone as a database.
void writeTrajectory(const std::string& path, unsigned int rows) {
  const std::vector<std::string> names{"timestamp",   "roll",     "pitch",     "yaw",
                                       "path_length", "latitude", "longitude", "height"};
  container::Writer writer(path);
  std::vector<std::vector<double>> columns;
  for (const std::string& name : names) {
    container::Attribute spec;
    spec.name = "riegl.pof_" + name;
    writer.addAttribute(spec);
    columns.push_back(bench::randomValues<double>(columns.size(), 0, rows));
  }
  const Points flight = pointsOfTheZone(rows);
  for (std::size_t i = 0; i < rows; ++i) {
    columns[5][i] = flight[i][1];
    columns[6][i] = flight[i][0];
    columns[7][i] = flight[i][2];
  }
  std::vector<const void*> places;
  for (const std::vector<double>& column : columns) {
    places.push_back(column.data());
  }
  writer.write(rows, places);
  writer.finish();
}

void loadTrajectory(const std::string& path, Nimbra::Grid& grid) {
  const support::ChangedVariable restored("PROJ_LIB", std::nullopt); // which the load sets
  const std::string failure = Riegl::pofx2nimbra(path, grid, 32633, nullptr, "", nullptr);
  bench::require(failure.empty(), failure);
}

void requirePositions(const std::string& path, unsigned int rows) {
  Nimbra::Grid grid;
  loadTrajectory(path, grid);
  Points expected = pointsOfTheZone(rows);
  BareProjection().apply(expected);
  const auto found = bench::fragmentsOf(grid, "Positions");
  const std::size_t bytes = rows * sizeof(Points::value_type);
  bench::require(found.size() == 1 && found[0].count == bytes &&
                     std::memcmp(found[0].first, expected.data(), bytes) == 0,
                 "positions of " + path);
}

bench::Finding trajectories() {
  constexpr unsigned int few = 1000;
  const unsigned int many = bench::records(blockPoints, 100000);
  const support::TempDir directory;
  const std::string brief = directory.path("brief.pofx");
  const std::string full = directory.path("full.pofx");
  writeTrajectory(brief, few);
  writeTrajectory(full, many);
  requirePositions(brief, few);
  requirePositions(full, many);
  std::optional<Nimbra::Grid> grid;
  const auto side = [&](const std::string& path) {
    return bench::Side{.run = [&grid, path] { loadTrajectory(path, *grid); },
                       .clear = [&] { grid.reset(); },
                       .prepare = [&] { grid.emplace(); }};
  };
  return bench::compare(side(brief), side(full));
}

} // namespace

int main(int argc, char** argv) {
  bench::addComparison("Proj::transform / array call on one thread", againstTheArrayCall);
  bench::addComparison("Proj::transform of 1000 points and zeros / of a full block", shortBlock);
  bench::addComparison("pofx2nimbra of 1000 records / of 5 million", trajectories);
  return bench::runComparisons(argc, argv);
}
