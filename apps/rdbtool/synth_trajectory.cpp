// SPDX-License-Identifier: BSD-3-Clause
// The records of a synthetic trajectory: the flight of the survey in longitude, latitude and height.
#include "apps/rdbtool/synth.h"

#include <algorithm>
#include <cmath>

namespace rdbtool {

namespace {

enum Column { timestamp, roll, pitch, yaw, longitude, latitude, height, pathLength, columnCount };

struct Record {
  double values[columnCount];
};

/// Rounds a value well above its last bit, in which the sines of different machines differ.
double rounded(double value, double stepsPerUnit) {
  return std::nearbyint(value * stepsPerUnit) / stepsPerUnit;
}

double fullCircle(double degrees) {
  const double rest = std::fmod(degrees, 360.0);
  return rest < 0 ? rest + 360.0 : rest;
}

/// Computes the records in order and sums up the length of the path, chord by chord.
class Flight {
 public:
  explicit Flight(const Survey& flownSurvey) : survey(flownSurvey), zone(surveyZone) {}

  Record at(std::uint64_t ticks) {
    constexpr double angleSteps = 1e11;
    constexpr double lengthSteps = 1e6;
    const Pose pose = survey.poseAt(ticks);
    const GridPosition grid{pose.place[0], pose.place[1]};
    GeodeticPosition position = zone.unproject(grid);
    position.height = pose.place[2];
    const Vector3 here = geocentric(position);
    length += any ? chord(last, here) : 0;
    last = here;
    any = true;
    const double trueYaw = pose.yaw * 360 + zone.around(grid).convergence * degreesPerRadian;
    Record record{};
    record.values[timestamp] = static_cast<double>(ticks) * tickSeconds;
    record.values[roll] = pose.roll * 360;
    record.values[pitch] = pose.pitch * 360;
    record.values[yaw] = rounded(fullCircle(trueYaw), 1e8);
    record.values[longitude] = rounded(position.longitude * degreesPerRadian, angleSteps);
    record.values[latitude] = rounded(position.latitude * degreesPerRadian, angleSteps);
    record.values[height] = pose.place[2];
    record.values[pathLength] = rounded(length, lengthSteps);
    return record;
  }

 private:
  const Survey& survey;
  TransverseMercatorZone zone;
  Vector3 last{};
  double length = 0;
  bool any = false;
};

} // namespace

void writeTrajectory(Writer& writer, const Survey& survey, const SynthRequest& request) {
  static constexpr struct {
    const char* name;
    const char* unit;
  } names[columnCount] = {{"riegl.pof_timestamp", "s"},   {"riegl.pof_roll", "deg"},
                          {"riegl.pof_pitch", "deg"},     {"riegl.pof_yaw", "deg"},
                          {"riegl.pof_longitude", "deg"}, {"riegl.pof_latitude", "deg"},
                          {"riegl.pof_height", "m"},      {"riegl.pof_path_length", "m"}};
  ColumnBatch batch(writer);
  for (const auto& column : names) {
    batch.add(attribute(column.name, ElementType::float64, column.unit));
  }
  const std::uint64_t ticksPerRecord = ticksPerSecond / request.trajectoryRateHz;
  Flight flight(survey);
  for (std::uint64_t first = 0; first < request.records; first += batchRows) {
    const auto rows = static_cast<std::size_t>(std::min<std::uint64_t>(batchRows, request.records - first));
    for (std::size_t row = 0; row < rows; ++row) {
      const Record record = flight.at(survey.startTicks() + (first + row) * ticksPerRecord);
      for (std::size_t column = 0; column < columnCount; ++column) {
        batch.put(column, row, record.values[column]);
      }
    }
    batch.write(rows);
  }
}

} // namespace rdbtool
