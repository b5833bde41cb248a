// A database file with waveform metadata, whole at first, from which a test takes items away.
#pragma once

#include <map>
#include <string>

#include "platform/rdb/writer.h"
#include "rdb/client.h"
#include "tests/support/temp_dir.h"
#include "waveform/attributes_for_fwf_processing.h"

namespace support {

class ScanDatabase {
 public:
  ScanDatabase& with(const std::string& item, const std::string& json) {
    items[item] = json;
    return *this;
  }
  ScanDatabase& without(const std::string& item) {
    items.erase(item);
    return *this;
  }

  std::string path() const { return directory.path("scan.sodx"); }

  /// Writes the file anew.
  void write() const {
    riegl::rdb::embedded::Writer writer(path());
    writer.addAttribute({.name = "riegl.raw_range"});
    for (const auto& [name, json] : items) {
      writer.setMetadata(name, json);
    }
    writer.finish();
  }

  /// Reads the file as it stands into a record.
  std::string readFile(Riegl::AttributesForFWFProcessing& record) const {
    riegl::rdb::Pointcloud pointcloud{riegl::rdb::Context()};
    pointcloud.open(path(), riegl::rdb::pointcloud::OpenSettings());
    return record.getAttributesViaJson(pointcloud);
  }

  std::string readInto(Riegl::AttributesForFWFProcessing& record) const {
    write();
    return readFile(record);
  }

 private:
  TempDir directory;
  std::map<std::string, std::string> items = {
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
};

} // namespace support
