// SPDX-License-Identifier: BSD-3-Clause
// getAttributesViaJson: fills the record for full-waveform processing from the metadata of a database.
#include <rdb2nimbra/rdb2nimbra.h>

#include "loader/waveform/json_search.h"
#include "loader/waveform/parsers.h"
#include "model/torvel/objects/console.h"
#include "names/names.h"

#include <algorithm>
#include <cstddef>

namespace Riegl {
namespace {

// Both attributes are defined in units of 4 picoseconds.
constexpr double shotTickSeconds = 4e-12;

std::string readNumber(const riegl::rdb::Pointcloud& pointcloud, const char* item, const char* key,
                       double& member) {
  member = 0;
  return getMetadataValue<double>(pointcloud, item, key, member);
}

std::string readText(const riegl::rdb::Pointcloud& pointcloud, const char* item, const char* key,
                     std::string& member) {
  member.clear();
  return getMetadataValue<std::string>(pointcloud, item, key, member);
}

/// Reads the beam, the samples and the time reference; all are needed.
std::string readWaveform(const riegl::rdb::Pointcloud& pointcloud, AttributesForFWFProcessing& record) {
  std::string status = readNumber(pointcloud, metadata::atmosphere, "group_velocity", record.group_velocity);
  if (!status.empty()) {
    return status;
  }
  status = readNumber(pointcloud, metadata::waveformInfo, "sample_interval", record.sample_interval);
  if (!status.empty()) {
    return status;
  }
  status = readNumber(pointcloud, metadata::atmosphere, "wavelength", record.wavelength);
  if (!status.empty()) {
    return status;
  }
  status = readNumber(pointcloud, metadata::waveformInfo, "delta_st", record.t_ref);
  Torvel::Console() << "WARNING sing of t_ref will be flipped: ";
  record.t_ref = -record.t_ref;
  return status;
}

/// Reads serial number, build, type, time base and zone width; serial number and time base are needed.
std::string readDevice(const riegl::rdb::Pointcloud& pointcloud, AttributesForFWFProcessing& record) {
  std::string status = readText(pointcloud, metadata::device, "serial_number", record.serial_number);
  if (!status.empty()) {
    return status;
  }
  readText(pointcloud, metadata::device, "device_build", record.build);
  readText(pointcloud, metadata::device, "device_type", record.device_type);
  status = readText(pointcloud, metadata::timeBase, "", record.time_base);
  if (!status.empty()) {
    return status;
  }
  readNumber(pointcloud, metadata::mtaSettings, "zone_width", record.unambiguous_range);
  return {};
}

/// Reads amplitude unit, step and table of the reflectance calculation; none is needed.
/// \return the text for the last of them that is missing; not reported
std::string readReflectance(const riegl::rdb::Pointcloud& pointcloud, AttributesForFWFProcessing& record) {
  const std::string rxp = pointcloud.metaData().get(metadata::rxpParameters, std::string());
  std::string status;
  if (!parseJsonValue<double>(rxp, "ampl_unit", record.ampl_unit)) {
    status = "baseRDB2Nimbra::ampl_unit not found";
  }
  if (!parseJsonValue<double>(rxp, "refl_delta", record.refl_delta)) {
    status = "baseRDB2Nimbra::refl_delta not found";
  }
  if (!parse_reflectance_table(rxp, record.refl_tableC)) {
    status = "baseRDB2Nimbra::reftable no available";
  }
  return status;
}

/// Replaces the arrays of the record by the terms of one channel. If the arrays have unequal lengths, the
/// elements after the end of the shortest are zero.
void takeOver(const ExponentialDecomposition& channel, AttributesForFWFProcessing& record) {
  using Array = Torvel::Chunk<double>;
  using Pointer = Torvel::StrongPtr<Array, Torvel::ChunkBase>;
  const Pointer aReal(new Array(channel.A.size()));
  const Pointer aImag(new Array(channel.B.size()));
  const Pointer bReal(new Array(channel.gamma.size()));
  const Pointer bImag(new Array(channel.omega.size()));
  // All four are allocated before the first is assigned, so that the record never has parts of two channels.
  record.a_real = aReal;
  record.a_imag = aImag;
  record.b_real = bReal;
  record.b_imag = bImag;
  const std::size_t terms = std::min({aReal->size(), aImag->size(), bReal->size(), bImag->size()});
  for (std::size_t i = 0; i < terms; ++i) {
    (*aReal)[i] = channel.A[i];
    (*aImag)[i] = channel.B[i];
    (*bReal)[i] = channel.gamma[i];
    (*bImag)[i] = channel.omega[i];
  }
}

/// Reads the system wave: the last channel, in the order of the map, that is not the reference channel "0".
void readSystemWave(const riegl::rdb::Pointcloud& pointcloud, AttributesForFWFProcessing& record) {
  const std::string text = pointcloud.metaData().get(metadata::exponentialDecomposition, std::string());
  ExponentialDecompositionMap channels;
  if (!parse_exponential_decomposition(text, channels)) {
    Torvel::Console() << "Failed to parse exponential decomposition metadata - Have no System Wave!";
    return;
  }
  for (const auto& [name, channel] : channels) {
    if (name != "0") {
      takeOver(channel, record);
    }
  }
}

} // namespace

std::string AttributesForFWFProcessing::getAttributesViaJson(const riegl::rdb::Pointcloud& pointcloud) {
  std::string status = readWaveform(pointcloud, *this);
  if (!status.empty()) {
    return status;
  }
  status = readDevice(pointcloud, *this);
  if (!status.empty()) {
    return status;
  }
  // Nothing from here on is needed: data without reflectance or system wave load, too. `status` names the last
  // item that is missing, for debuggers.
  status = readReflectance(pointcloud, *this);
  SHOT_TIMESTAMP_HR_RESOLUTION = shotTickSeconds;
  WFM_SBL_TIME_OFFSET_RESOLUTION = shotTickSeconds;
  readSystemWave(pointcloud, *this);
  return {};
}

} // namespace Riegl
