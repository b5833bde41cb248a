// SPDX-License-Identifier: BSD-3-Clause
// The metadata items of a synthetic survey.
#include "apps/rdbtool/synth_metadata.h"

#include "apps/rdbtool/tool_error.h"

#include <nlohmann/json.hpp>

namespace rdbtool {

namespace {

using Json = nlohmann::ordered_json;

constexpr double laserWavelengthNanometres = 1550;
constexpr int reflectanceSteps = 512;

Json waveformInfo() {
  const auto channel = [](int number, const char* name, double deltaStart, double intervalSeconds) {
    return Json{{"channel", number},
                {"channel_name", name},
                {"sample_interval", intervalSeconds},
                {"sample_bits", 16},
                {"delta_st", deltaStart},
                {"laser_wavelength", 0},
                {"file_extension", "sp" + std::to_string(number)}};
  };
  return {{"sample_block_file", {{"file_extension", "sbx"}}},
          {"sample_data_files",
           {channel(0, "high_power", 0.0, 1.0e-9), channel(1, "low_power", 1.25e-9, 1.0e-9),
            channel(2, "reference", 2.5e-9, 2.0e-9)}}};
}

Json exponentialDecomposition() {
  Json channels = Json::object();
  for (int channel = 0; channel < 3; ++channel) {
    const double step = 1 + 0.125 * channel;
    channels[std::to_string(channel)] = {{"delay", 3.783e-9 * step},
                                         {"scale", 1.0 * step},
                                         {"a_lin", 0.27},
                                         {"parameter",
                                          {{"A", {0.9772 * step, 0.3124, -1.2929}},
                                           {"B", {-3.9813 * step, 0.0823, 0.4145}},
                                           {"gamma", {-1094726528.0 * step, -769562752.0, -848000064.0}},
                                           {"omega", {352020896.0 * step, 3647927552.0, -1977987072.0}}}}};
  }
  return channels;
}

Json rxpParameters() {
  Json table = Json::array();
  for (int step = 0; step < reflectanceSteps; ++step) {
    table.push_back(-40 + 0.125 * step);
  }
  return {{"ampl_unit", 0.01}, {"refl_delta", 0.5}, {"pointcloud", {{"refltab", table}}}};
}

void addShotItems(Json& items) {
  items["riegl.atmosphere"] = {{"temperature", 11.5},
                               {"pressure", 968.0},
                               {"pressure_sl", 1013.25},
                               {"rel_humidity", 62.0},
                               {"amsl", 400.0},
                               {"attenuation", 0.028125},
                               {"group_velocity", groupVelocity},
                               {"wavelength", laserWavelengthNanometres}};
  items["riegl.waveform_info"] = waveformInfo();
  items["riegl.device"] = {{"device_type", "SYN-600"},
                           {"device_build", "synthetic"},
                           {"serial_number", "S0000001"},
                           {"device_name", "synthetic scanner"}};
  items["riegl.mta_settings"] = {{"zone_count", 4}, {"zone_width", 1499.0}, {"modulation_depth", 9.5}};
  items["debug.rxp_parameters"] = rxpParameters();
  items["riegl.exponential_decomposition"] = exponentialDecomposition();
}

/// Removes `key` from every object in `value`. \return whether there was one
bool removeKey(Json& value, const std::string& key) {
  bool removed = value.is_object() && value.erase(key) > 0;
  for (Json& element : value) {
    if (element.is_structured()) {
      removed = removeKey(element, key) || removed;
    }
  }
  return removed;
}

void leaveOut(Json& items, const std::string& entry) {
  const std::size_t colon = entry.find(':');
  const std::string item = entry.substr(0, colon);
  const bool there = items.contains(item);
  const bool removed = colon == std::string::npos ? items.erase(item) > 0
                                                  : there && removeKey(items[item], entry.substr(colon + 1));
  if (!removed) {
    throw wrongUse("--without " + entry + ": expected a metadata item or item:key of this database, found " +
                   (there ? "no such key in the item" : "no such item"));
  }
}

} // namespace

std::map<std::string, std::string> syntheticMetadata(SynthKind kind, const Survey& survey,
                                                     const std::vector<std::string>& without) {
  Json items = Json::object();
  items["riegl.time_base"] = Json::parse(timeBaseText(survey.day(), "UTC"));
  items["riegl.geo_tag"] = {{"crs", {{"epsg", 32633}}}};
  if (kind == SynthKind::shots) {
    addShotItems(items);
  } else if (kind == SynthKind::trajectory) {
    items["riegl.trajectory_info"] = {{"project", "synthetic survey"}, {"software", "rdbtool"}};
  }
  for (const std::string& entry : without) {
    leaveOut(items, entry);
  }
  std::map<std::string, std::string> texts;
  for (const auto& [name, value] : items.items()) {
    texts[name] = value.dump();
  }
  return texts;
}

} // namespace rdbtool
