// SPDX-License-Identifier: BSD-3-Clause
// Fills the record for full-waveform processing from the metadata of a database.
#include <rdb2nimbra/rdb2nimbra.h>

#include "loader/waveform/json_search.h"
#include "loader/waveform/parsers.h"
#include "model/torvel/objects/console.h"
#include "names/names.h"

#include <algorithm>
#include <cstddef>

namespace Riegl {
namespace {

// Both attributes count in units of 4 picoseconds, by their definition.
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

/// The beam, the samples and the time reference, each needed.
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

/// Serial number, build, type, time base and zone width, of which the first and the time base are needed.
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

/// Amplitude unit, step and table of the reflectance calculation, of which none is needed.
/// \returns the last thing that was missing; nobody asks
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

/// New arrays with the terms of one channel. Where the metadata has arrays of unequal lengths, the terms
/// behind the end of the shortest are left at zero.
void takeOver(const ExponentialDecomposition& channel, AttributesForFWFProcessing& record) {
  using Array = Torvel::Chunk<double>;
  using Pointer = Torvel::StrongPtr<Array, Torvel::ChunkBase>;
  const Pointer aReal(new Array(channel.A.size()));
  const Pointer aImag(new Array(channel.B.size()));
  const Pointer bReal(new Array(channel.gamma.size()));
  const Pointer bImag(new Array(channel.omega.size()));
  // All four stand before the first is handed over, so that the record never holds parts of two channels.
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

/// The system wave: the last channel in the order of the map that isn't the reference channel "0".
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
  // From here on nothing that is missing ends the read: data without reflectance or system wave load all the
  // same. The text says what failed last, for whoever looks with a debugger.
  status = readReflectance(pointcloud, *this);
  SHOT_TIMESTAMP_HR_RESOLUTION = shotTickSeconds;
  WFM_SBL_TIME_OFFSET_RESOLUTION = shotTickSeconds;
  readSystemWave(pointcloud, *this);
  return {};
}

} // namespace Riegl
