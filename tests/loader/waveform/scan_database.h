// SPDX-License-Identifier: BSD-3-Clause
// Fixture: a database file with complete waveform metadata, from which a test removes items.
#pragma once

#include <rdb2nimbra/rdb2nimbra.h>

#include "container/write/writer.h"
#include "tests/loader/waveform/scan_items.h"
#include "tests/support/temp_dir.h"

#include <map>
#include <string>

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

  /// Writes the file again.
  void write(const container::WriterSettings& settings = {}) const {
    container::Writer writer(path(), settings);
    writer.addAttribute({.name = "riegl.raw_range"});
    for (const auto& [name, json] : items) {
      writer.setMetadata(name, json);
    }
    writer.finish();
  }

  /// Reads the current file into a record.
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
  std::map<std::string, std::string> items = scanItems();
};

} // namespace support
