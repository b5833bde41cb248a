// SPDX-License-Identifier: BSD-3-Clause
// The rows of the point-cloud import: which attribute becomes which field. A new column is a new row here and
// an entry in names/names.h.
#pragma once

#include "names/names.h"

#include <array>
#include <cstddef>

namespace Riegl {

/// One column of the import. Its element type and the size of its buffer are those of the attribute.
struct RdbxRow {
  Attribute attribute;                ///< the database is asked for it
  const char* field;                  ///< name of the field
  const Attribute* boundAs = nullptr; ///< the attribute that is read, where it is not `attribute`
  bool onlyWithAll = false;           ///< loaded with `loadAllAttributes` only
  bool toChart = true;                ///< false: the field lies in "ScannerCoordinateSystem"
  bool bufferAlways = false;          ///< buffer and field are also made where the attribute is absent
  bool statedTwice = false;           ///< asked for, made and bound twice in a row; the second buffer stays

  /// The attribute that the client writes to the buffer.
  constexpr const Attribute& boundAttribute() const { return boundAs != nullptr ? *boundAs : attribute; }
};

/// The rows in their order, in which fields are made and blocks are published. Five of them look wrong and
/// are meant so: - "riegl.rgba" decides whether there is a field "RGBA", but the field gets the bytes of
/// "riegl.direction_medium". - "riegl.raw_range" is stated twice. The first buffer is released before
/// anything is read. - "riegl.target_count" feeds two fields. The client writes to the buffer that was bound
/// last. - "riegl.xyz" and "riegl.pof_xyz" feed one field. The later array replaces the earlier. - The
/// intersections of hydrography have three values per record in a column of one. The buffer holds them all,
/// and the field keeps the first values, as many as there are records.
// clang-format off
inline constexpr auto rdbxRows = [] {
  using attributes::named;
  return std::to_array<RdbxRow>({
      {.attribute = named("riegl.xyz"), .field = "Positions", .bufferAlways = true},
      {.attribute = named("riegl.timestamp"), .field = "GPSTime"},
      {.attribute = named("riegl.xyz_socs"), .field = "Positions", .toChart = false},
      {.attribute = named("riegl.direction_medium"), .field = "DirectionMedium"},
      {.attribute = named("riegl.amplitude"), .field = "Amplitude"},
      {.attribute = named("riegl.reflectance"), .field = "Reflectance"},
      {.attribute = named("riegl.deviation"), .field = "Deviation"},
      {.attribute = named("riegl.pulse_width"), .field = "PulseWidth", .onlyWithAll = true},
      {.attribute = named("riegl.target_index"), .field = "TargetIndex"},
      {.attribute = named("riegl.target_count"), .field = "NumberOfReturns"},
      {.attribute = named("riegl.mirror_facet"), .field = "MirrorFacet"},
      {.attribute = named("riegl.scan_segment"), .field = "ScanSegment", .onlyWithAll = true},
      {.attribute = named("riegl.mta_uncertain_point"), .field = "MtaUncertainPoint", .onlyWithAll = true},
      {.attribute = named("riegl.mta_zone"), .field = "MtaZone", .onlyWithAll = true},
      {.attribute = named("riegl.window_echo_impact_corrected"), .field = "WindowEchoImpactCorrected", .onlyWithAll = true},
      {.attribute = named("riegl.rgba"), .field = "RGBA", .boundAs = &named("riegl.direction_medium")},
      {.attribute = named("riegl.class"), .field = "Classification", .onlyWithAll = true},
      {.attribute = named("riegl.start_of_scan_line"), .field = "StartOfScanLine"},
      {.attribute = named("riegl.source_indicator"), .field = "SourceIndicator", .onlyWithAll = true},
      {.attribute = named("riegl.fwa"), .field = "Fwa", .onlyWithAll = true},
      {.attribute = named("riegl.waveform_available"), .field = "WaveformAvailable", .onlyWithAll = true},
      {.attribute = named("riegl.wfm_sbl_id"), .field = "WfmSampleBlockID", .onlyWithAll = true},
      {.attribute = named("riegl.wfm_echo_time_offset"), .field = "WfmEchoTimeOffset", .onlyWithAll = true},
      {.attribute = named("riegl.scan_angle"), .field = "ScanAngle"},
      {.attribute = named("riegl.scan_direction"), .field = "ScanDirection", .onlyWithAll = true},
      {.attribute = named("riegl.source_index"), .field = "SourceIndex", .onlyWithAll = true},
      {.attribute = named("riegl.hydro_intersection_point"), .field = "HydroIntersectionPoint"},
      {.attribute = named("riegl.hydro_intersection_normal"), .field = "HydroIntersectionNormal"},
      {.attribute = named("riegl.wfm_sbl_time_offset"), .field = "WaveformSampleBlockTimeOffset"},
      {.attribute = named("riegl.id"), .field = "ID"},
      {.attribute = named("riegl.wfm_sbl_channel"), .field = "Channel"},
      {.attribute = named("riegl.wfm_sbl_mean"), .field = "WaveformSampleValueMean"},
      {.attribute = named("riegl.wfm_sbl_std_dev"), .field = "WaveformSampleValueStandardDeviation"},
      {.attribute = named("riegl.wfm_sda_first"), .field = "WaveformSampleDataFirst"},
      {.attribute = named("riegl.wfm_sda_count"), .field = "WaveformSampleDataCount"},
      {.attribute = named("riegl.wfm_sample_value"), .field = "WaveformSampleValue"},
      {.attribute = named("riegl.line_angle_coarse"), .field = "LineAngleCoarse"},
      {.attribute = named("riegl.shot_origin"), .field = "ShotOrigin"},
      {.attribute = named("riegl.shot_direction"), .field = "Waveforms.DirectionDelta"},
      {.attribute = named("riegl.echo_first"), .field = "EchoFirst"},
      {.attribute = named("riegl.echo_count"), .field = "EchoCount"},
      {.attribute = named("riegl.shot_timestamp_hr"), .field = "ShotTimeStamp"},
      {.attribute = named("riegl.wfm_sbl_first"), .field = "WaveformSampleBlockFirst"},
      {.attribute = named("riegl.wfm_sbl_count"), .field = "WaveformSampleBlockCount"},
      {.attribute = named("riegl.raw_range"), .field = "RawRange", .statedTwice = true},
      {.attribute = named("riegl.gain"), .field = "Gain"},
      {.attribute = named("riegl.dyntrig_uncertain_point"), .field = "DyntrigUncertainPoint"},
      {.attribute = named("riegl.target_count"), .field = "TargetCount"},
      {.attribute = named("riegl.scan_line_index"), .field = "ScanLineIndex"},
      {.attribute = named("riegl.pof_latitude"), .field = "Latitude"},
      {.attribute = named("riegl.pof_longitude"), .field = "Longitude"},
      {.attribute = named("riegl.pof_height"), .field = "EllipsoidalHeight"},
      {.attribute = named("riegl.pof_roll"), .field = "Roll"},
      {.attribute = named("riegl.pof_pitch"), .field = "Pitch"},
      {.attribute = named("riegl.pof_yaw"), .field = "Yaw"},
      {.attribute = named("riegl.pof_xyz"), .field = "Positions"},
      {.attribute = named("riegl.pof_roll_ned"), .field = "Roll_ned"},
      {.attribute = named("riegl.pof_pitch_ned"), .field = "Pitch_ned"},
      {.attribute = named("riegl.pof_yaw_ned"), .field = "Yaw_ned"},
      {.attribute = named("riegl.pof_timestamp"), .field = "Timestamp_pof"},
      {.attribute = named("riegl.pof_path_length"), .field = "PathLength_pof"},
  });
}();
// clang-format on

inline constexpr std::size_t rdbxRowCount = rdbxRows.size();

/// Place of the first row of an attribute. A name without a row does not compile.
consteval std::size_t rowOf(std::string_view name) {
  for (std::size_t i = 0; i < rdbxRowCount; ++i) {
    if (rdbxRows[i].attribute.name == name) {
      return i;
    }
  }
  throw "expected an attribute that has a row";
}

/// Places of the rows that the load itself refers to.
inline constexpr std::size_t positionsRow = rowOf("riegl.xyz");
inline constexpr std::size_t gpsTimeRow = rowOf("riegl.timestamp");
inline constexpr std::size_t shotTimeStampRow = rowOf("riegl.shot_timestamp_hr");

/// Whether each buffer has room for what the client writes to it.
consteval bool buffersAreLargeEnough() {
  for (const RdbxRow& row : rdbxRows) {
    if (row.boundAttribute().mostValues > row.attribute.mostValues) {
      return false;
    }
  }
  return true;
}

static_assert(rdbxRows[positionsRow].attribute.element == ElementType::point,
              "RdbxColumns::positions has points");
static_assert(buffersAreLargeEnough(),
              "a row is bound as an attribute with more values per record than its own");

} // namespace Riegl
