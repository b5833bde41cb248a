// SPDX-License-Identifier: BSD-3-Clause
// addAttributeToZ4File: attaches the record for full-waveform processing to grids and fields.
#include <rdb2nimbra/rdb2nimbra.h>

#include "model/torvel/objects/console.h"

namespace Riegl {
namespace {

using Record = AttributesForFWFProcessing;

/// Sets an attribute of a grid or field, as a new chunk with one element.
template <class T, class Pointer>
void attachValue(const Pointer& target, const char* name, const T& value) {
  const Torvel::StrongPtr<Torvel::Chunk<T>, Torvel::ChunkBase> chunk(new Torvel::Chunk<T>(1));
  chunk->values().front() = value;
  target->attributes().setAttribute(name, chunk);
}

/// Sets an array of the record as an attribute of a grid or field, without a copy.
template <class T, class Pointer>
void attachShared(const Pointer& target, const char* name,
                  const Torvel::StrongPtr<Torvel::Chunk<T>, Torvel::ChunkBase>& chunk) {
  target->attributes().setAttribute(name, chunk);
}

/// Whether `target` is valid; if not, adds its name to `missing`.
template <class Pointer>
bool reachable(const Pointer& target, const char* argument, std::string& missing) {
  if (!target) {
    missing.append(missing.empty() ? "" : ", ").append(argument);
  }
  return static_cast<bool>(target);
}

void attachScanner(const Record& record, const Record::GridPointer& grid) {
  attachValue(grid, "Scanner Group Velocity", record.group_velocity);
  attachValue(grid, "Scanner Serial Number", record.serial_number);
  attachValue(grid, "Scanner Build Number", record.build);
  attachValue(grid, "Scanner Type", record.device_type);
  attachValue(grid, "Wavelength[nm]", static_cast<float>(record.wavelength));
}

void attachSystemWave(const Record& record, const Record::FieldPointer& waveformField) {
  attachValue(waveformField, "WaveformSampleInterval", record.sample_interval);
  if (record.a_real && !record.a_real->empty()) {
    attachShared(waveformField, "a_real", record.a_real);
    attachShared(waveformField, "a_imag", record.a_imag);
    attachShared(waveformField, "b_real", record.b_real);
    attachShared(waveformField, "b_imag", record.b_imag);
  } else {
    Torvel::Console() << " rdbx2z4::addAttributeToZ4File: Warning NO expsum_a and expsum_b parameter! ";
  }
}

void attachToWaveformGrid(const Record& record, const Record::GridPointer& grid, int rdbSegment) {
  attachValue(grid, "WaveformSampleInterval", record.sample_interval);
  attachScanner(record, grid);
  attachValue(grid, "RDB_Segment", rdbSegment);
}

void attachToPointGrid(const Record& record, const Record::GridPointer& grid, int rdbSegment) {
  attachScanner(record, grid);
  attachValue(grid, "UnambiguousRange", record.unambiguous_range);
  attachValue(grid, "RDB_Segment", rdbSegment);
  if (record.refl_tableC && !record.refl_tableC->empty()) {
    attachValue(grid, "reflectance_calculation_delta", record.refl_delta);
    attachValue(grid, "ampl_unit", record.ampl_unit);
    attachShared(grid, "reflectance_calculation_table", record.refl_tableC);
  }
}

} // namespace

std::string AttributesForFWFProcessing::addAttributeToZ4File(const GridPointer& waveformGrid,
                                                             const GridPointer& pointGrid,
                                                             const FieldPointer& waveformField,
                                                             const FieldPointer& tRefField,
                                                             const int& rdbSegment) const {
  std::string missing;
  if (waveformField) {
    attachSystemWave(*this, waveformField);
    if (reachable(tRefField, "tRefField", missing)) {
      attachValue(tRefField, "t_ref", t_ref);
    }
    if (reachable(waveformGrid, "waveformGrid", missing)) {
      attachToWaveformGrid(*this, waveformGrid, rdbSegment);
    }
  }
  if (reachable(pointGrid, "pointGrid", missing)) {
    attachToPointGrid(*this, pointGrid, rdbSegment);
  }
  if (missing.empty()) {
    return {};
  }
  return "addAttributeToZ4File: expected a grid or field, found null: " + missing +
         "; all other attributes were set";
}

} // namespace Riegl
