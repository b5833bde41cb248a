// SPDX-License-Identifier: BSD-3-Clause
// Fixture: a small flight as a database, and its load.
#pragma once

#include <rdb2nimbra/rdb2nimbra.h>

#include "tests/support/console_lines.h"
#include "tests/support/database.h"
#include "tests/support/grid.h"
#include "tests/support/temp_dir.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

namespace flight {

using Point = Quillon::PhysicalSpace::point;
using Metadata = std::map<std::string, std::string>;
using ChunkPointer = Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>;

inline const Metadata utcTimeBase{
    {"riegl.time_base", R"({"epoch":"2023-05-04T00:00:00Z","source":"GNSS","system":"UTC"})"}};
inline const Metadata gpsTimeBase{
    {"riegl.time_base", R"({"epoch":"2023-05-04T00:00:00Z","source":"GNSS","system":"GPS"})"}};

inline const std::vector<std::string> fieldsInOrder{"GPSTime", "Roll",      "Pitch",
                                                    "Yaw",     "Positions", "PofPathLength"};
inline const std::vector<std::string> attributesInOrder{
    "riegl.pof_timestamp",   "riegl.pof_roll",     "riegl.pof_pitch",     "riegl.pof_yaw",
    "riegl.pof_path_length", "riegl.pof_latitude", "riegl.pof_longitude", "riegl.pof_height"};

// Values of record i of the flight.
inline double timeOf(double i) {
  return 345600.5 + 0.01 * i;
}
inline double rollOf(double i) {
  return 1.5 - 0.25 * i;
}
inline double pitchOf(double i) {
  return -0.5 + 0.125 * i;
}
inline double yawOf(double i) {
  return 180 + i;
}
inline double lengthOf(double i) {
  return 0.75 * i;
}
inline double latitudeOf(double i) {
  return 48 + 0.001 * i;
}
inline double longitudeOf(double i) {
  return 16 + 0.002 * i;
}
inline double heightOf(double i) {
  return 300 + i;
}

inline support::Column column(const std::string& name, double (*rule)(double)) {
  return support::column(
      name, container::ElementType::float64, 1,
      [rule](std::uint64_t record, unsigned int) { return rule(static_cast<double>(record)); });
}

inline std::vector<support::Column> columns() {
  return {column("riegl.pof_timestamp", timeOf),      column("riegl.pof_roll", rollOf),
          column("riegl.pof_pitch", pitchOf),         column("riegl.pof_yaw", yawOf),
          column("riegl.pof_path_length", lengthOf),  column("riegl.pof_latitude", latitudeOf),
          column("riegl.pof_longitude", longitudeOf), column("riegl.pof_height", heightOf)};
}

/// Values of a column for the first `count` records.
inline std::vector<double> valuesOf(double (*rule)(double), unsigned int count) {
  std::vector<double> values;
  for (unsigned int i = 0; i < count; ++i) {
    values.push_back(rule(i));
  }
  return values;
}

/// A database of few records and its load onto a new grid.
class Load : public testing::Test {
 protected:
  void givenFlight(std::uint64_t records, const Metadata& metadata = {}) {
    support::writeDatabase(path, records, columns(), metadata);
  }
  void givenFlightWithout(const std::vector<std::string>& missing) {
    std::vector<support::Column> kept = columns();
    std::erase_if(kept, [&](const support::Column& column) {
      return std::find(missing.begin(), missing.end(), column.spec.name) != missing.end();
    });
    support::writeDatabase(path, 3, kept);
  }
  void givenLeverArm(const std::string& text) {
    leverArm = directory.path("lever-arm.txt");
    std::ofstream(leverArm, std::ios::binary) << text;
  }
  std::string load() { return Riegl::pofx2nimbra(path, grid, epsg, callback, leverArm, nullptr); }

  Nimbra::Field::Pointer field(const std::string& name) const { return support::field(grid, name); }
  std::vector<double> values(const std::string& name, const std::string& fragment) const {
    return support::values<double>(field(name), fragment);
  }
  std::vector<Point> positions(const std::string& fragment) const {
    return support::values<Point>(field("Positions"), fragment);
  }
  std::vector<unsigned char> leapSecondsAdded() const {
    return support::attributeValues<unsigned char>(field("GPSTime")->attributes(), "LeapSecondsAdded?");
  }
  void expectEveryFieldToHave(const std::vector<std::string>& fragments) const {
    EXPECT_EQ(support::fieldNames(grid), fieldsInOrder);
    for (const std::string& name : fieldsInOrder) {
      EXPECT_EQ(support::fragmentNames(field(name)), fragments) << name;
    }
  }
  bool gridIsUntouched() const { return grid.representations().empty() && grid.attributes().empty(); }

  support::TempDir directory;
  support::ConsoleLines console;
  Nimbra::Grid grid;
  std::string path = directory.path("flight.pofx");
  std::string leverArm;
  int epsg = 4326; // positions stay in degrees
  Riegl::ChunkCallback callback;
};

} // namespace flight
