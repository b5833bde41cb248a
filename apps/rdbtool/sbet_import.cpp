// SPDX-License-Identifier: BSD-3-Clause
// Imports SBET trajectories: records of 17 doubles become the attributes riegl.pof_*; docs/rdbtool.md has the mapping.
#include "apps/common/interruption.h"
#include "apps/common/number_text.h"
#include "apps/common/printable_text.h"
#include "apps/rdbtool/geocentric.h"
#include "apps/rdbtool/import.h"
#include "apps/rdbtool/input_file.h"
#include "apps/rdbtool/tool_error.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <ostream>

namespace rdbtool {

namespace {

constexpr double degreesPerRadian = 180 / std::numbers::pi;
constexpr std::size_t valuesPerRecord = 17;
constexpr std::size_t recordBytes = valuesPerRecord * sizeof(double);

/// Positions of the imported values in a record; velocities, accelerations and rates are skipped.
enum Value { time, latitude, longitude, altitude, roll = 7, pitch, platformHeading, wanderAngle };

using Record = std::array<double, valuesPerRecord>;

std::uint64_t wholeRecords(const InputFile& file) {
  const std::uint64_t records = file.byteSize() / recordBytes;
  if (file.byteSize() % recordBytes != 0) {
    throw failed(file.path() + ": expected a multiple of 136 bytes, found " +
                 std::to_string(file.byteSize()) + ", which is " + std::to_string(records) +
                 (records == 1 ? " whole record and " : " whole records and ") +
                 std::to_string(file.byteSize() % recordBytes) + " bytes");
  }
  return records;
}

void checkRecord(const std::string& path, std::uint64_t number, const Record& record) {
  static constexpr std::array<const char*, wanderAngle + 1> names{
      "time",       "latitude", "longitude", "altitude",         "x velocity",  "y velocity",
      "z velocity", "roll",     "pitch",     "platform heading", "wander angle"};
  for (std::size_t place = 0; place < names.size(); ++place) {
    const double size = std::abs(record[place]);
    if (!std::isfinite(size) || (place == latitude && size > std::numbers::pi / 2) ||
        (place == longitude && size > 2 * std::numbers::pi)) {
      throw failed(path + ": expected finite values and angles in radians, found " + names[place] + " " +
                   apps::numberText(record[place]) + " in record " + std::to_string(number));
    }
  }
}

/// Degrees from true north in [0, 360); the platform heading is relative to the wander frame.
double yawDegrees(const Record& record) {
  const double yaw = std::fmod((record[platformHeading] - record[wanderAngle]) * degreesPerRadian, 360.0);
  const double positive = yaw < 0 ? yaw + 360.0 : yaw;
  return positive >= 360.0 ? 0.0 : positive; // the sum above may round to 360
}

/// Converts records to rows and sums up the length of the path.
class TrajectoryWriter {
 public:
  explicit TrajectoryWriter(Writer& writer) : batch(writer) {
    for (const char* name :
         {"timestamp", "latitude", "longitude", "height", "roll", "pitch", "yaw", "path_length"}) {
      const std::string text = name;
      const bool metres = text == "height" || text == "path_length";
      batch.add(attribute("riegl.pof_" + text, ElementType::float64,
                          text == "timestamp" ? "s"
                          : metres            ? "m"
                                              : "deg"));
    }
  }

  void put(const Record& record, std::size_t row) {
    const Place here = geocentric(record[longitude], record[latitude], record[altitude]);
    pathLength += any ? std::hypot(here[0] - last[0], here[1] - last[1], here[2] - last[2]) : 0;
    last = here;
    any = true;
    const double values[] = {record[time],
                             record[latitude] * degreesPerRadian,
                             record[longitude] * degreesPerRadian,
                             record[altitude],
                             record[roll] * degreesPerRadian,
                             record[pitch] * degreesPerRadian,
                             yawDegrees(record),
                             pathLength};
    for (std::size_t column = 0; column < batch.columnCount(); ++column) {
      batch.put(column, row, values[column]);
    }
  }
  void write(std::size_t rows) { batch.write(rows); }

 private:
  using Place = std::array<double, 3>;

  ColumnBatch batch;
  GeocentricConversion geocentric;
  Place last{};
  double pathLength = 0;
  bool any = false;
};

} // namespace

std::uint64_t importSbet(const ImportRequest& request, std::ostream& notes) {
  InputFile file(request.input);
  const std::uint64_t records = wholeRecords(file);
  double firstStamp = 0;
  if (records > 0) {
    firstStamp = littleEndian<double>(file.atMost(0, sizeof(double)).data());
  }
  if (!(firstStamp >= 0 && firstStamp < weekSeconds)) {
    apps::printLine(notes, request.input + ": expected GPS seconds of the week, found a first stamp of " +
                               apps::numberText(firstStamp) + "; the stamps are kept as they are");
  }
  const apps::InterruptionWatch watch;
  Writer writer(request.output, request.writer);
  TrajectoryWriter trajectory(writer);
  const std::chrono::sys_days week = request.date.value_or(gpsOrigin);
  writer.setMetadata("riegl.time_base", timeBaseText(epochForWeekSeconds(firstStamp, week), "GPS"));
  std::vector<Record> piece(batchRows);
  for (std::uint64_t first = 0; first < records; first += batchRows) {
    const auto rows = static_cast<std::size_t>(std::min<std::uint64_t>(batchRows, records - first));
    file.readAt(first * recordBytes, std::as_writable_bytes(std::span(piece.data(), rows)));
    for (std::size_t row = 0; row < rows; ++row) {
      checkRecord(request.input, first + row, piece[row]);
      trajectory.put(piece[row], row);
    }
    trajectory.write(rows);
  }
  writer.finish();
  return records;
}

} // namespace rdbtool
