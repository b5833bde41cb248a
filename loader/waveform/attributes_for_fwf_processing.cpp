// SPDX-License-Identifier: BSD-3-Clause
// speak and overwrite_t_ref of the record for full-waveform processing.
#include <rdb2nimbra/rdb2nimbra.h>

#include "arrays/nimbra/element_text.h"
#include "model/torvel/objects/console.h"

#include <algorithm>
#include <cstddef>

namespace Riegl {
namespace {

void appendLine(std::string& text, const char* label, const std::string& value) {
  text.append(label).append(value).append("\n");
}

template <class Scalar>
void appendLine(std::string& text, const char* label, Scalar value) {
  text += label;
  Nimbra::appendNumber(text, value);
  text += '\n';
}

void appendTable(std::string& text, const Torvel::Chunk<float>& table) {
  constexpr const char* labels[] = {"refl_tableC[0]: ", "refl_tableC[1]: ", "refl_tableC[2]: "};
  const std::size_t shown = std::min(std::size(labels), table.size());
  for (std::size_t i = 0; i < shown; ++i) {
    appendLine(text, labels[i], table[i]);
  }
  // The closing line stands for the rest of the table and has the last index shown; a shorter table has none.
  if (shown == std::size(labels)) {
    text += "refl_tableC[2]: ...\n";
  }
}

} // namespace

std::string AttributesForFWFProcessing::speak() const {
  std::string text = "AttributesForFWFProcessing:\n";
  appendLine(text, "group_velocity: ", group_velocity);
  appendLine(text, "sample_interval: ", sample_interval);
  appendLine(text, "wavelength: ", wavelength);
  appendLine(text, "t_ref(delta_st): ", t_ref);
  appendLine(text, "serial_number: ", serial_number);
  appendLine(text, "device_type: ", device_type);
  appendLine(text, "time_base: ", time_base);
  appendLine(text, "unambiguous_range: ", unambiguous_range);
  appendLine(text, "build: ", build);
  appendLine(text, "SHOT_TIMESTAMP_HR_RESOLUTION: ", SHOT_TIMESTAMP_HR_RESOLUTION);
  appendLine(text, "WFM_SBL_TIME_OFFSET_RESOLUTION: ", WFM_SBL_TIME_OFFSET_RESOLUTION);
  appendLine(text, "ampl_unit: ", ampl_unit);
  appendLine(text, "refl_delta: ", refl_delta);
  if (refl_tableC) {
    appendTable(text, *refl_tableC);
  }
  return text;
}

void AttributesForFWFProcessing::overwrite_t_ref(const double& value) {
  Torvel::Console() << "Warning: Overwrite t_ref 1.58875e-7 based on date: ";
  t_ref = value;
}

} // namespace Riegl
