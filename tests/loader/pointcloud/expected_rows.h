// SPDX-License-Identifier: BSD-3-Clause
// The expected columns of the point-cloud import, written down independently of the library's own table.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace pointcloudTest {

struct ExpectedRow {
  std::string attribute;
  std::string field;
  std::string type; ///< readable name of the element
  int dataType;
  bool onlyWithAll;

  friend void PrintTo(const ExpectedRow& test, std::ostream* stream) { *stream << test.attribute; }
};

inline const std::vector<ExpectedRow>& expectedRows() {
  static const std::vector<ExpectedRow> rows = {
      {"riegl.xyz", "Positions", "point", 10, false},
      {"riegl.timestamp", "GPSTime", "double", 10, false},
      {"riegl.xyz_socs", "Positions", "point", 10, false},
      {"riegl.direction_medium", "DirectionMedium", "vector", 10, false},
      {"riegl.amplitude", "Amplitude", "float", 9, false},
      {"riegl.reflectance", "Reflectance", "float", 9, false},
      {"riegl.deviation", "Deviation", "short", 4, false},
      {"riegl.pulse_width", "PulseWidth", "float", 9, true},
      {"riegl.target_index", "TargetIndex", "unsigned char", 1, false},
      {"riegl.target_count", "NumberOfReturns", "unsigned char", 1, false},
      {"riegl.mirror_facet", "MirrorFacet", "unsigned char", 1, false},
      {"riegl.scan_segment", "ScanSegment", "unsigned char", 1, true},
      {"riegl.mta_uncertain_point", "MtaUncertainPoint", "unsigned char", 1, true},
      {"riegl.mta_zone", "MtaZone", "unsigned char", 1, true},
      {"riegl.window_echo_impact_corrected", "WindowEchoImpactCorrected", "unsigned char", 1, true},
      {"riegl.rgba", "RGBA", "RGBA", 1, false},
      {"riegl.class", "Classification", "unsigned short", 3, true},
      {"riegl.start_of_scan_line", "StartOfScanLine", "unsigned char", 1, false},
      {"riegl.source_indicator", "SourceIndicator", "unsigned char", 1, true},
      {"riegl.fwa", "Fwa", "unsigned char", 1, true},
      {"riegl.waveform_available", "WaveformAvailable", "unsigned char", 1, true},
      {"riegl.wfm_sbl_id", "WfmSampleBlockID", "unsigned long long", 7, true},
      {"riegl.wfm_echo_time_offset", "WfmEchoTimeOffset", "int", 6, true},
      {"riegl.scan_angle", "ScanAngle", "float", 9, false},
      {"riegl.scan_direction", "ScanDirection", "unsigned char", 1, true},
      {"riegl.source_index", "SourceIndex", "unsigned int", 5, true},
      {"riegl.hydro_intersection_point", "HydroIntersectionPoint", "double", 10, false},
      {"riegl.hydro_intersection_normal", "HydroIntersectionNormal", "double", 10, false},
      {"riegl.wfm_sbl_time_offset", "WaveformSampleBlockTimeOffset", "int", 6, false},
      {"riegl.id", "ID", "unsigned long long", 7, false},
      {"riegl.wfm_sbl_channel", "Channel", "unsigned char", 1, false},
      {"riegl.wfm_sbl_mean", "WaveformSampleValueMean", "float", 9, false},
      {"riegl.wfm_sbl_std_dev", "WaveformSampleValueStandardDeviation", "float", 9, false},
      {"riegl.wfm_sda_first", "WaveformSampleDataFirst", "unsigned long long", 7, false},
      {"riegl.wfm_sda_count", "WaveformSampleDataCount", "unsigned short", 3, false},
      {"riegl.wfm_sample_value", "WaveformSampleValue", "unsigned short", 3, false},
      {"riegl.line_angle_coarse", "LineAngleCoarse", "float", 9, false},
      {"riegl.shot_origin", "ShotOrigin", "point", 10, false},
      {"riegl.shot_direction", "Waveforms.DirectionDelta", "vector", 10, false},
      {"riegl.echo_first", "EchoFirst", "unsigned long long", 7, false},
      {"riegl.echo_count", "EchoCount", "unsigned short", 3, false},
      {"riegl.shot_timestamp_hr", "ShotTimeStamp", "unsigned long long", 7, false},
      {"riegl.wfm_sbl_first", "WaveformSampleBlockFirst", "unsigned long long", 7, false},
      {"riegl.wfm_sbl_count", "WaveformSampleBlockCount", "unsigned short", 3, false},
      {"riegl.raw_range", "RawRange", "double", 10, false},
      {"riegl.gain", "Gain", "float", 9, false},
      {"riegl.dyntrig_uncertain_point", "DyntrigUncertainPoint", "unsigned char", 1, false},
      {"riegl.target_count", "TargetCount", "unsigned char", 1, false},
      {"riegl.scan_line_index", "ScanLineIndex", "int", 6, false},
      {"riegl.pof_latitude", "Latitude", "double", 10, false},
      {"riegl.pof_longitude", "Longitude", "double", 10, false},
      {"riegl.pof_height", "EllipsoidalHeight", "double", 10, false},
      {"riegl.pof_roll", "Roll", "double", 10, false},
      {"riegl.pof_pitch", "Pitch", "double", 10, false},
      {"riegl.pof_yaw", "Yaw", "double", 10, false},
      {"riegl.pof_xyz", "Positions", "point", 10, false},
      {"riegl.pof_roll_ned", "Roll_ned", "double", 10, false},
      {"riegl.pof_pitch_ned", "Pitch_ned", "double", 10, false},
      {"riegl.pof_yaw_ned", "Yaw_ned", "double", 10, false},
      {"riegl.pof_timestamp", "Timestamp_pof", "double", 10, false},
      {"riegl.pof_path_length", "PathLength_pof", "double", 10, false},
  };
  return rows;
}

} // namespace pointcloudTest
