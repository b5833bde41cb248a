// SPDX-License-Identifier: BSD-3-Clause
// The complete, valid metadata of a scan with waveforms.
#pragma once

#include <cstddef>
#include <map>
#include <string>

namespace support {

/// The elements of a JSON array of equal elements.
inline std::string repeated(std::size_t count, const std::string& element) {
  std::string text = element;
  for (std::size_t i = 1; i < count; ++i) {
    text += "," + element;
  }
  return text;
}

/// Metadata items by name.
inline std::map<std::string, std::string> scanItems() {
  return {
      {"riegl.atmosphere", R"({"wavelength": 1550, "group_velocity": 299711000.0})"},
      {"riegl.waveform_info",
       R"({"sample_data_files": [{"channel": 0, "sample_interval": 1.0e-9, "delta_st": 0.25},
                                 {"channel": 1, "sample_interval": 2.0e-9, "delta_st": 0.5}]})"},
      {"riegl.device", R"({"serial_number": "S1234", "device_build": "b7", "device_type": "kind"})"},
      {"riegl.time_base", R"({"source":"GNSS","epoch":"2015-10-27T00:00:00+00:00"})"},
      {"riegl.mta_settings", R"({"zone_width": 1499.5})"},
      {"debug.rxp_parameters",
       R"({"deep": {"ampl_unit": "0.02"}, "pointcloud": {"refl_delta": 0.25, "refltab": [1.5, 2.5, 3.5]}})"},
      {"riegl.exponential_decomposition",
       R"({"0": {"parameter": {"A": [9], "B": [9], "gamma": [9], "omega": [9]}},
           "1": {"parameter": {"A": [1, 2], "B": [3, 4], "gamma": [5, 6], "omega": [7, 8]}}})"}};
}

} // namespace support
