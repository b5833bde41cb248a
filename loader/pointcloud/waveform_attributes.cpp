// SPDX-License-Identifier: BSD-3-Clause
// Copies nine members of the record for full-waveform processing to attributes of "Positions".
#include "loader/pointcloud/waveform_attributes.h"

#include <rdb2nimbra/rdb2nimbra.h>

namespace Riegl {

std::string setWaveformAttributes(const riegl::rdb::Pointcloud& database,
                                  Z4Data<Quillon::PhysicalSpace::point>& positions) {
  AttributesForFWFProcessing record;
  std::string failure = record.getAttributesViaJson(database);
  if (!failure.empty()) {
    return failure;
  }
  positions.setAttribute("group_velocity", record.group_velocity);
  positions.setAttribute("sample_interval", record.sample_interval);
  positions.setAttribute("wavelength[nm]", static_cast<float>(record.wavelength));
  positions.setAttribute("t_ref", record.t_ref);
  positions.setAttribute("serial_number", record.serial_number);
  positions.setAttribute("device_type", record.device_type);
  positions.setAttribute("time_base", record.time_base);
  positions.setAttribute("SHOT_TIMESTAMP_HR_RESOLUTION", record.SHOT_TIMESTAMP_HR_RESOLUTION);
  positions.setAttribute("WFM_SBL_TIME_OFFSET_RESOLUTION", record.WFM_SBL_TIME_OFFSET_RESOLUTION);
  return std::string();
}

} // namespace Riegl
