// SPDX-License-Identifier: BSD-3-Clause
// Names of the point attributes and metadata items that the library asks a database for.
// The names are fixed by the RDB 2 attribute and metadata tables.
#pragma once

namespace Riegl {

/// Point attributes, for the attribute catalogue and for binding.
namespace attributes {
inline constexpr const char* amplitude = "riegl.amplitude";
inline constexpr const char* classification = "riegl.class";
inline constexpr const char* deviation = "riegl.deviation";
inline constexpr const char* directionMedium = "riegl.direction_medium";
inline constexpr const char* dyntrigUncertainPoint = "riegl.dyntrig_uncertain_point";
inline constexpr const char* echoCount = "riegl.echo_count";
inline constexpr const char* echoFirst = "riegl.echo_first";
inline constexpr const char* fwa = "riegl.fwa";
inline constexpr const char* gain = "riegl.gain";
inline constexpr const char* hydroIntersectionNormal = "riegl.hydro_intersection_normal";
inline constexpr const char* hydroIntersectionPoint = "riegl.hydro_intersection_point";
inline constexpr const char* id = "riegl.id";
inline constexpr const char* lineAngleCoarse = "riegl.line_angle_coarse";
inline constexpr const char* mirrorFacet = "riegl.mirror_facet";
inline constexpr const char* mtaUncertainPoint = "riegl.mta_uncertain_point";
inline constexpr const char* mtaZone = "riegl.mta_zone";
inline constexpr const char* pofHeight = "riegl.pof_height";
inline constexpr const char* pofLatitude = "riegl.pof_latitude";
inline constexpr const char* pofLongitude = "riegl.pof_longitude";
inline constexpr const char* pofPathLength = "riegl.pof_path_length";
inline constexpr const char* pofPitch = "riegl.pof_pitch";
inline constexpr const char* pofPitchNed = "riegl.pof_pitch_ned";
inline constexpr const char* pofRoll = "riegl.pof_roll";
inline constexpr const char* pofRollNed = "riegl.pof_roll_ned";
inline constexpr const char* pofTimestamp = "riegl.pof_timestamp";
inline constexpr const char* pofXyz = "riegl.pof_xyz";
inline constexpr const char* pofYaw = "riegl.pof_yaw";
inline constexpr const char* pofYawNed = "riegl.pof_yaw_ned";
inline constexpr const char* pulseWidth = "riegl.pulse_width";
inline constexpr const char* rawRange = "riegl.raw_range";
inline constexpr const char* reflectance = "riegl.reflectance";
inline constexpr const char* rgba = "riegl.rgba";
inline constexpr const char* scanAngle = "riegl.scan_angle";
inline constexpr const char* scanDirection = "riegl.scan_direction";
inline constexpr const char* scanLineIndex = "riegl.scan_line_index";
inline constexpr const char* scanSegment = "riegl.scan_segment";
inline constexpr const char* shotDirection = "riegl.shot_direction";
inline constexpr const char* shotOrigin = "riegl.shot_origin";
inline constexpr const char* shotTimestampHr = "riegl.shot_timestamp_hr";
inline constexpr const char* sourceIndex = "riegl.source_index";
inline constexpr const char* sourceIndicator = "riegl.source_indicator";
inline constexpr const char* startOfScanLine = "riegl.start_of_scan_line";
inline constexpr const char* targetCount = "riegl.target_count";
inline constexpr const char* targetIndex = "riegl.target_index";
inline constexpr const char* timestamp = "riegl.timestamp";
inline constexpr const char* waveformAvailable = "riegl.waveform_available";
inline constexpr const char* wfmEchoTimeOffset = "riegl.wfm_echo_time_offset";
inline constexpr const char* wfmSampleValue = "riegl.wfm_sample_value";
inline constexpr const char* wfmSblChannel = "riegl.wfm_sbl_channel";
inline constexpr const char* wfmSblCount = "riegl.wfm_sbl_count";
inline constexpr const char* wfmSblFirst = "riegl.wfm_sbl_first";
inline constexpr const char* wfmSblId = "riegl.wfm_sbl_id";
inline constexpr const char* wfmSblMean = "riegl.wfm_sbl_mean";
inline constexpr const char* wfmSblStdDev = "riegl.wfm_sbl_std_dev";
inline constexpr const char* wfmSblTimeOffset = "riegl.wfm_sbl_time_offset";
inline constexpr const char* wfmSdaCount = "riegl.wfm_sda_count";
inline constexpr const char* wfmSdaFirst = "riegl.wfm_sda_first";
inline constexpr const char* windowEchoImpactCorrected = "riegl.window_echo_impact_corrected";
inline constexpr const char* xyz = "riegl.xyz";
inline constexpr const char* xyzSocs = "riegl.xyz_socs";
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
/// Not in the tables: written by the conversion of the scanner's raw data.
inline constexpr const char* rxpParameters = "debug.rxp_parameters";
} // namespace metadata

} // namespace Riegl
