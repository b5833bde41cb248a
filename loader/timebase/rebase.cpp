// SPDX-License-Identifier: BSD-3-Clause
// modifyGPSTime: decides which shift a time column needs, and shifts it.
#include <rdb2nimbra/rdb2nimbra.h>

#include "arrays/nimbra/element_text.h"
#include "model/torvel/references/chunk.h"

#include <limits>
#include <vector>

namespace Riegl {

namespace {

constexpr double dayLengthSeconds = 86400.0;
/// The double nearest to 1/86400. Days are computed by multiplication with it, never by division.
constexpr double inverseDayLength = 1.1574074074074073e-05;
/// GPS time minus UTC. The only place that has the number.
constexpr double leapSeconds = 18.0;

template <class Number>
std::string asText(Number value) {
  std::string text;
  Nimbra::appendNumber(text, value);
  return text;
}

/// Whole days of a stamp, rounded down. A stamp whose days do not fit an int, or not a number, gives the
/// lowest int.
int wholeDays(double seconds) {
  const double days = seconds * inverseDayLength;
  constexpr double lowest = std::numeric_limits<int>::min();
  if (!(days >= lowest && days < -lowest)) {
    return std::numeric_limits<int>::min();
  }
  const int truncated = static_cast<int>(days);
  return static_cast<double>(truncated) > days ? truncated - 1 : truncated;
}

void shiftAll(std::vector<double>& stamps, double shift) {
  for (double& stamp : stamps) {
    stamp += shift;
  }
}

} // namespace

void modifyGPSTime(std::string& error, const int& weekDay,
                   const Torvel::StrongPtr<Torvel::ChunkBase, Torvel::ChunkBase>& chunk,
                   const std::string& fieldName, const bool& isUTC) {
  if (!error.empty() || fieldName != "GPSTime") {
    return;
  }
  const Torvel::StrongPtr<Torvel::Chunk<double>, Torvel::ChunkBase> seconds(chunk);
  if (!seconds) {
    error = "baseRDB2Nimbra:: Have not time-field with type double.";
    return;
  }
  std::vector<double>& stamps = seconds->values();
  if (stamps.empty()) {
    return;
  }
  // Only the first and the last stamp decide: a column that is not in ascending order is no failure.
  const int firstDay = wholeDays(stamps.front());
  if (firstDay != wholeDays(stamps.back())) {
    error = "baseRDB2Nimbra:: Input file spans two days! Not implemented so far.";
  } else if (firstDay < 1) {
    if (weekDay != 0 || !isUTC) {
      shiftAll(stamps, static_cast<double>(weekDay) * dayLengthSeconds - (isUTC ? 0.0 : leapSeconds));
    }
  } else if (firstDay != weekDay) {
    error =
        "baseRDB2Nimbra:: WeekDay " + asText(weekDay) + " does not match GPSTime: " + asText(stamps.front());
  }
}

} // namespace Riegl
