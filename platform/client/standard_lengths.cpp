// SPDX-License-Identifier: BSD-3-Clause
// The lengths of the well-known attributes.
#include "platform/client/standard_lengths.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace riegl::rdb::embedded {

namespace {

struct Entry {
  std::string_view name; ///< without "riegl."
  LengthRange length;
};

constexpr LengthRange single{1, 1};
constexpr LengthRange triple{3, 3};
/// Some writers store only one value of an intersection.
constexpr LengthRange upToTriple{1, 3};

constexpr std::array entries{Entry{"xyz", triple},
                             Entry{"xyz_socs", triple},
                             Entry{"pof_xyz", triple},
                             Entry{"shot_origin", triple},
                             Entry{"shot_direction", triple},
                             Entry{"direction_medium", triple},
                             Entry{"hydro_intersection_point", upToTriple},
                             Entry{"hydro_intersection_normal", upToTriple},
                             Entry{"amplitude", single},
                             Entry{"class", single},
                             Entry{"deviation", single},
                             Entry{"dyntrig_uncertain_point", single},
                             Entry{"echo_count", single},
                             Entry{"echo_first", single},
                             Entry{"fwa", single},
                             Entry{"gain", single},
                             Entry{"id", single},
                             Entry{"line_angle_coarse", single},
                             Entry{"mirror_facet", single},
                             Entry{"mta_uncertain_point", single},
                             Entry{"mta_zone", single},
                             Entry{"pof_height", single},
                             Entry{"pof_latitude", single},
                             Entry{"pof_longitude", single},
                             Entry{"pof_path_length", single},
                             Entry{"pof_pitch", single},
                             Entry{"pof_pitch_ned", single},
                             Entry{"pof_roll", single},
                             Entry{"pof_roll_ned", single},
                             Entry{"pof_timestamp", single},
                             Entry{"pof_yaw", single},
                             Entry{"pof_yaw_ned", single},
                             Entry{"pulse_width", single},
                             Entry{"raw_range", single},
                             Entry{"reflectance", single},
                             Entry{"scan_angle", single},
                             Entry{"scan_direction", single},
                             Entry{"scan_line_index", single},
                             Entry{"scan_segment", single},
                             Entry{"shot_timestamp_hr", single},
                             Entry{"source_index", single},
                             Entry{"source_indicator", single},
                             Entry{"start_of_scan_line", single},
                             Entry{"target_count", single},
                             Entry{"target_index", single},
                             Entry{"timestamp", single},
                             Entry{"waveform_available", single},
                             Entry{"wfm_echo_time_offset", single},
                             Entry{"wfm_sample_value", single},
                             Entry{"wfm_sbl_channel", single},
                             Entry{"wfm_sbl_count", single},
                             Entry{"wfm_sbl_first", single},
                             Entry{"wfm_sbl_id", single},
                             Entry{"wfm_sbl_mean", single},
                             Entry{"wfm_sbl_std_dev", single},
                             Entry{"wfm_sbl_time_offset", single},
                             Entry{"wfm_sda_count", single},
                             Entry{"wfm_sda_first", single},
                             Entry{"window_echo_impact_corrected", single}};

} // namespace

std::optional<LengthRange> standardLength(const std::string& name) {
  constexpr std::string_view prefix = "riegl.";
  if (name.compare(0, prefix.size(), prefix) != 0) {
    return std::nullopt;
  }
  const std::string_view rest = std::string_view(name).substr(prefix.size());
  const auto found =
      std::find_if(entries.begin(), entries.end(), [rest](const Entry& entry) { return entry.name == rest; });
  return found != entries.end() ? std::optional(found->length) : std::nullopt;
}

} // namespace riegl::rdb::embedded
