// SPDX-License-Identifier: BSD-3-Clause
// The one table of the point attributes that the project knows, and the names of the metadata items.
// The names are fixed by the RDB 2 attribute and metadata tables.
#pragma once

#include "names/element_type.h"

#include <string_view>

namespace Riegl {

/// One point attribute of a database.
struct Attribute {
  const char* name;     ///< name in the database
  ElementType element;  ///< element type of the column that it becomes
  unsigned leastValues; ///< fewest values per record that a database may have
  unsigned mostValues;  ///< most values per record; the size of every buffer follows from it

  /// Elements of a buffer that holds `mostValues` values.
  constexpr unsigned elementsPerRecord() const { return mostValues / componentsOf(element); }
};

namespace attributes {

/// All attributes, by name. A database client must refuse an attribute whose values per record lie outside
/// its range, because the loader sizes its buffers by this table and not by the database.
///
/// Some writers store only one value of a hydrographic intersection.
// clang-format off
inline constexpr Attribute table[] = {
    {"riegl.amplitude", ElementType::float32, 1, 1},
    {"riegl.class", ElementType::uint16, 1, 1},
    {"riegl.deviation", ElementType::int16, 1, 1},
    {"riegl.direction_medium", ElementType::vector, 3, 3},
    {"riegl.dyntrig_uncertain_point", ElementType::uint8, 1, 1},
    {"riegl.echo_count", ElementType::uint16, 1, 1},
    {"riegl.echo_first", ElementType::uint64, 1, 1},
    {"riegl.fwa", ElementType::uint8, 1, 1},
    {"riegl.gain", ElementType::float32, 1, 1},
    {"riegl.hydro_intersection_normal", ElementType::float64, 1, 3},
    {"riegl.hydro_intersection_point", ElementType::float64, 1, 3},
    {"riegl.id", ElementType::uint64, 1, 1},
    {"riegl.line_angle_coarse", ElementType::float32, 1, 1},
    {"riegl.mirror_facet", ElementType::uint8, 1, 1},
    {"riegl.mta_uncertain_point", ElementType::uint8, 1, 1},
    {"riegl.mta_zone", ElementType::uint8, 1, 1},
    {"riegl.pof_height", ElementType::float64, 1, 1},
    {"riegl.pof_latitude", ElementType::float64, 1, 1},
    {"riegl.pof_longitude", ElementType::float64, 1, 1},
    {"riegl.pof_path_length", ElementType::float64, 1, 1},
    {"riegl.pof_pitch", ElementType::float64, 1, 1},
    {"riegl.pof_pitch_ned", ElementType::float64, 1, 1},
    {"riegl.pof_roll", ElementType::float64, 1, 1},
    {"riegl.pof_roll_ned", ElementType::float64, 1, 1},
    {"riegl.pof_timestamp", ElementType::float64, 1, 1},
    {"riegl.pof_xyz", ElementType::point, 3, 3},
    {"riegl.pof_yaw", ElementType::float64, 1, 1},
    {"riegl.pof_yaw_ned", ElementType::float64, 1, 1},
    {"riegl.pulse_width", ElementType::float32, 1, 1},
    {"riegl.raw_range", ElementType::float64, 1, 1},
    {"riegl.reflectance", ElementType::float32, 1, 1},
    {"riegl.rgba", ElementType::rgba, 4, 4},
    {"riegl.scan_angle", ElementType::float32, 1, 1},
    {"riegl.scan_direction", ElementType::uint8, 1, 1},
    {"riegl.scan_line_index", ElementType::int32, 1, 1},
    {"riegl.scan_segment", ElementType::uint8, 1, 1},
    {"riegl.shot_direction", ElementType::vector, 3, 3},
    {"riegl.shot_origin", ElementType::point, 3, 3},
    {"riegl.shot_timestamp_hr", ElementType::uint64, 1, 1},
    {"riegl.source_index", ElementType::uint32, 1, 1},
    {"riegl.source_indicator", ElementType::uint8, 1, 1},
    {"riegl.start_of_scan_line", ElementType::uint8, 1, 1},
    {"riegl.target_count", ElementType::uint8, 1, 1},
    {"riegl.target_index", ElementType::uint8, 1, 1},
    {"riegl.timestamp", ElementType::float64, 1, 1},
    {"riegl.waveform_available", ElementType::uint8, 1, 1},
    {"riegl.wfm_echo_time_offset", ElementType::int32, 1, 1},
    {"riegl.wfm_sample_value", ElementType::uint16, 1, 1},
    {"riegl.wfm_sbl_channel", ElementType::uint8, 1, 1},
    {"riegl.wfm_sbl_count", ElementType::uint16, 1, 1},
    {"riegl.wfm_sbl_first", ElementType::uint64, 1, 1},
    {"riegl.wfm_sbl_id", ElementType::uint64, 1, 1},
    {"riegl.wfm_sbl_mean", ElementType::float32, 1, 1},
    {"riegl.wfm_sbl_std_dev", ElementType::float32, 1, 1},
    {"riegl.wfm_sbl_time_offset", ElementType::int32, 1, 1},
    {"riegl.wfm_sda_count", ElementType::uint16, 1, 1},
    {"riegl.wfm_sda_first", ElementType::uint64, 1, 1},
    {"riegl.window_echo_impact_corrected", ElementType::uint8, 1, 1},
    {"riegl.xyz", ElementType::point, 3, 3},
    {"riegl.xyz_socs", ElementType::point, 3, 3},
};
// clang-format on

/// The attribute of that name, or null for a name that is not in the table.
constexpr const Attribute* find(std::string_view name) {
  for (const Attribute& attribute : table) {
    if (attribute.name == name) {
      return &attribute;
    }
  }
  return nullptr;
}

/// The attribute of that name, looked up by the compiler: `attributes::named("riegl.xyz")`. A name that is
/// not in the table does not compile.
consteval const Attribute& named(std::string_view name) {
  const Attribute* const found = find(name);
  return found != nullptr ? *found : throw "expected the name of an attribute in names/names.h";
}

/// Whether each name stands for one entry.
consteval bool namesAreUnique() {
  for (const Attribute& attribute : table) {
    if (find(attribute.name) != &attribute) {
      return false;
    }
  }
  return true;
}

/// Whether each attribute fills whole elements of a type that the client knows.
consteval bool valuesFillElements() {
  for (const Attribute& attribute : table) {
    const unsigned components = componentsOf(attribute.element);
    if (dataTypeOf(attribute.element) == 0 || attribute.leastValues < components ||
        attribute.leastValues > attribute.mostValues || attribute.mostValues % components != 0) {
      return false;
    }
  }
  return true;
}

static_assert(namesAreUnique(), "an attribute stands twice in the table");
static_assert(valuesFillElements(), "the values per record of an attribute do not fit its element type");

} // namespace attributes

/// Metadata items; each holds a JSON document.
namespace metadata {
inline constexpr const char* atmosphere = "riegl.atmosphere";
inline constexpr const char* device = "riegl.device";
inline constexpr const char* exponentialDecomposition = "riegl.exponential_decomposition";
inline constexpr const char* geoTag = "riegl.geo_tag";
inline constexpr const char* mtaSettings = "riegl.mta_settings";
inline constexpr const char* timeBase = "riegl.time_base";
inline constexpr const char* trajectoryInfo = "riegl.trajectory_info";
inline constexpr const char* waveformInfo = "riegl.waveform_info";
/// Not in the RDB 2 tables: written by the conversion of the scanner's raw data.
inline constexpr const char* rxpParameters = "debug.rxp_parameters";
} // namespace metadata

} // namespace Riegl
