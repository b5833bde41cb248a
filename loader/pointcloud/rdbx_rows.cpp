// SPDX-License-Identifier: BSD-3-Clause
// The rows of the point-cloud import; a new column is a new row here and a name in names/names.h.
//
// Longer than other files because it is a table. What reads oddly is meant so:
// - "riegl.rgba" decides whether there is a field RGBA, but its bytes are those of "riegl.direction_medium".
// - "riegl.raw_range" is stated twice; the first buffer is gone before anything is read.
// - "riegl.target_count" feeds two fields; the client writes to the buffer that was bound last.
// - "riegl.xyz" and "riegl.pof_xyz" go to one field, the later one stays.
// - The intersections of hydrography have three values a record in a column of one; the buffer has room for
//   them, and the field keeps the first ones.
#include "loader/pointcloud/rdbx_rows.h"

#include "names/names.h"

namespace Riegl {

// clang-format off
const std::array<RdbxRow, rdbxRowCount> rdbxRows{{
    {.name = attributes::xyz, .field = "Positions", .element = Element::point, .dataType = 10, .bufferAlways = true},
    {.name = attributes::timestamp, .field = "GPSTime", .element = Element::float64, .dataType = 10},
    {.name = attributes::xyzSocs, .field = "Positions", .element = Element::point, .dataType = 10, .toChart = false},
    {.name = attributes::directionMedium, .field = "DirectionMedium", .element = Element::vector, .dataType = 10},
    {.name = attributes::amplitude, .field = "Amplitude", .element = Element::float32, .dataType = 9},
    {.name = attributes::reflectance, .field = "Reflectance", .element = Element::float32, .dataType = 9},
    {.name = attributes::deviation, .field = "Deviation", .element = Element::int16, .dataType = 4},
    {.name = attributes::pulseWidth, .field = "PulseWidth", .element = Element::float32, .dataType = 9, .onlyWithAll = true},
    {.name = attributes::targetIndex, .field = "TargetIndex", .element = Element::uint8, .dataType = 1},
    {.name = attributes::targetCount, .field = "NumberOfReturns", .element = Element::uint8, .dataType = 1},
    {.name = attributes::mirrorFacet, .field = "MirrorFacet", .element = Element::uint8, .dataType = 1},
    {.name = attributes::scanSegment, .field = "ScanSegment", .element = Element::uint8, .dataType = 1, .onlyWithAll = true},
    {.name = attributes::mtaUncertainPoint, .field = "MtaUncertainPoint", .element = Element::uint8, .dataType = 1, .onlyWithAll = true},
    {.name = attributes::mtaZone, .field = "MtaZone", .element = Element::uint8, .dataType = 1, .onlyWithAll = true},
    {.name = attributes::windowEchoImpactCorrected, .field = "WindowEchoImpactCorrected", .element = Element::uint8, .dataType = 1, .onlyWithAll = true},
    {.name = attributes::rgba, .field = "RGBA", .element = Element::rgba, .dataType = 1, .boundName = attributes::directionMedium},
    {.name = attributes::classification, .field = "Classification", .element = Element::uint16, .dataType = 3, .onlyWithAll = true},
    {.name = attributes::startOfScanLine, .field = "StartOfScanLine", .element = Element::uint8, .dataType = 1},
    {.name = attributes::sourceIndicator, .field = "SourceIndicator", .element = Element::uint8, .dataType = 1, .onlyWithAll = true},
    {.name = attributes::fwa, .field = "Fwa", .element = Element::uint8, .dataType = 1, .onlyWithAll = true},
    {.name = attributes::waveformAvailable, .field = "WaveformAvailable", .element = Element::uint8, .dataType = 1, .onlyWithAll = true},
    {.name = attributes::wfmSblId, .field = "WfmSampleBlockID", .element = Element::uint64, .dataType = 7, .onlyWithAll = true},
    {.name = attributes::wfmEchoTimeOffset, .field = "WfmEchoTimeOffset", .element = Element::int32, .dataType = 6, .onlyWithAll = true},
    {.name = attributes::scanAngle, .field = "ScanAngle", .element = Element::float32, .dataType = 9},
    {.name = attributes::scanDirection, .field = "ScanDirection", .element = Element::uint8, .dataType = 1, .onlyWithAll = true},
    {.name = attributes::sourceIndex, .field = "SourceIndex", .element = Element::uint32, .dataType = 5, .onlyWithAll = true},
    {.name = attributes::hydroIntersectionPoint, .field = "HydroIntersectionPoint", .element = Element::float64, .dataType = 10, .valuesPerRecord = 3},
    {.name = attributes::hydroIntersectionNormal, .field = "HydroIntersectionNormal", .element = Element::float64, .dataType = 10, .valuesPerRecord = 3},
    {.name = attributes::wfmSblTimeOffset, .field = "WaveformSampleBlockTimeOffset", .element = Element::int32, .dataType = 6},
    {.name = attributes::id, .field = "ID", .element = Element::uint64, .dataType = 7},
    {.name = attributes::wfmSblChannel, .field = "Channel", .element = Element::uint8, .dataType = 1},
    {.name = attributes::wfmSblMean, .field = "WaveformSampleValueMean", .element = Element::float32, .dataType = 9},
    {.name = attributes::wfmSblStdDev, .field = "WaveformSampleValueStandardDeviation", .element = Element::float32, .dataType = 9},
    {.name = attributes::wfmSdaFirst, .field = "WaveformSampleDataFirst", .element = Element::uint64, .dataType = 7},
    {.name = attributes::wfmSdaCount, .field = "WaveformSampleDataCount", .element = Element::uint16, .dataType = 3},
    {.name = attributes::wfmSampleValue, .field = "WaveformSampleValue", .element = Element::uint16, .dataType = 3},
    {.name = attributes::lineAngleCoarse, .field = "LineAngleCoarse", .element = Element::float32, .dataType = 9},
    {.name = attributes::shotOrigin, .field = "ShotOrigin", .element = Element::point, .dataType = 10},
    {.name = attributes::shotDirection, .field = "Waveforms.DirectionDelta", .element = Element::vector, .dataType = 10},
    {.name = attributes::echoFirst, .field = "EchoFirst", .element = Element::uint64, .dataType = 7},
    {.name = attributes::echoCount, .field = "EchoCount", .element = Element::uint16, .dataType = 3},
    {.name = attributes::shotTimestampHr, .field = "ShotTimeStamp", .element = Element::uint64, .dataType = 7},
    {.name = attributes::wfmSblFirst, .field = "WaveformSampleBlockFirst", .element = Element::uint64, .dataType = 7},
    {.name = attributes::wfmSblCount, .field = "WaveformSampleBlockCount", .element = Element::uint16, .dataType = 3},
    {.name = attributes::rawRange, .field = "RawRange", .element = Element::float64, .dataType = 10, .statedTwice = true},
    {.name = attributes::gain, .field = "Gain", .element = Element::float32, .dataType = 9},
    {.name = attributes::dyntrigUncertainPoint, .field = "DyntrigUncertainPoint", .element = Element::uint8, .dataType = 1},
    {.name = attributes::targetCount, .field = "TargetCount", .element = Element::uint8, .dataType = 1},
    {.name = attributes::scanLineIndex, .field = "ScanLineIndex", .element = Element::int32, .dataType = 6},
    {.name = attributes::pofLatitude, .field = "Latitude", .element = Element::float64, .dataType = 10},
    {.name = attributes::pofLongitude, .field = "Longitude", .element = Element::float64, .dataType = 10},
    {.name = attributes::pofHeight, .field = "EllipsoidalHeight", .element = Element::float64, .dataType = 10},
    {.name = attributes::pofRoll, .field = "Roll", .element = Element::float64, .dataType = 10},
    {.name = attributes::pofPitch, .field = "Pitch", .element = Element::float64, .dataType = 10},
    {.name = attributes::pofYaw, .field = "Yaw", .element = Element::float64, .dataType = 10},
    {.name = attributes::pofXyz, .field = "Positions", .element = Element::point, .dataType = 10},
    {.name = attributes::pofRollNed, .field = "Roll_ned", .element = Element::float64, .dataType = 10},
    {.name = attributes::pofPitchNed, .field = "Pitch_ned", .element = Element::float64, .dataType = 10},
    {.name = attributes::pofYawNed, .field = "Yaw_ned", .element = Element::float64, .dataType = 10},
    {.name = attributes::pofTimestamp, .field = "Timestamp_pof", .element = Element::float64, .dataType = 10},
    {.name = attributes::pofPathLength, .field = "PathLength_pof", .element = Element::float64, .dataType = 10},
}};
// clang-format on

} // namespace Riegl
