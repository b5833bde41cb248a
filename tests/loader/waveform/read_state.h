// SPDX-License-Identifier: BSD-3-Clause
// How far a read got, derived from the members of the record.
#pragma once

#include <rdb2nimbra/rdb2nimbra.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace support {

/// A record whose members have values that no read produces.
inline Riegl::AttributesForFWFProcessing filledRecord() {
  Riegl::AttributesForFWFProcessing record;
  record.group_velocity = record.sample_interval = record.wavelength = record.t_ref = 42;
  record.unambiguous_range = record.SHOT_TIMESTAMP_HR_RESOLUTION = record.WFM_SBL_TIME_OFFSET_RESOLUTION = 42;
  record.serial_number = record.build = record.device_type = record.time_base = "earlier";
  return record;
}

/// State of the members that a read fills before the reflectance, in the order of the requests.
inline std::vector<std::string> state(const Riegl::AttributesForFWFProcessing& record) {
  const auto number = [](double value) { return value == 42 ? "earlier" : value == 0 ? "0" : "read"; };
  const auto text = [](const std::string& value) {
    return value == "earlier" ? "earlier" : value.empty() ? "-" : "read";
  };
  return {number(record.group_velocity),    number(record.sample_interval),
          number(record.wavelength),        number(record.t_ref),
          text(record.serial_number),       text(record.build),
          text(record.device_type),         text(record.time_base),
          number(record.unambiguous_range), number(record.SHOT_TIMESTAMP_HR_RESOLUTION)};
}

/// `read` times "read", then `at`, then "earlier" to the end.
inline std::vector<std::string> stoppedAfter(std::size_t read, const std::string& at) {
  std::vector<std::string> words(10, "earlier");
  std::fill_n(words.begin(), read, "read");
  words[read] = at;
  return words;
}

} // namespace support
