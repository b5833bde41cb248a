// SPDX-License-Identifier: BSD-3-Clause
// The coordinate system of a LAS file as the metadata item riegl.geo_tag.
#include "apps/rdbtool/las_projection.h"

#include <nlohmann/json.hpp>

namespace rdbtool {

namespace {

constexpr unsigned wktRecord = 2112;
constexpr unsigned geoKeyRecord = 34735;
constexpr unsigned geographicKey = 2048;
constexpr unsigned projectedKey = 3072;
constexpr unsigned userDefinedCode = 32767;

/// The value of a key that the directory itself stores; 0 if there is no such key or it is user-defined.
unsigned geoKey(const std::vector<std::byte>& directory, unsigned wanted) {
  constexpr std::size_t entryBytes = 8;
  for (std::size_t at = entryBytes; at + entryBytes <= directory.size(); at += entryBytes) {
    const unsigned key = littleEndian<std::uint16_t>(&directory[at]);
    const unsigned storedIn = littleEndian<std::uint16_t>(&directory[at + 2]);
    const unsigned code = littleEndian<std::uint16_t>(&directory[at + 6]);
    if (key == wanted && storedIn == 0 && code != userDefinedCode) {
      return code;
    }
  }
  return 0;
}

} // namespace

std::string geoTagText(const std::vector<LasVariableRecord>& records) {
  nlohmann::ordered_json system = nlohmann::ordered_json::object();
  for (const LasVariableRecord& record : records) {
    if (record.user != "LASF_Projection") {
      continue;
    }
    if (record.number == geoKeyRecord) {
      const unsigned projected = geoKey(record.payload, projectedKey);
      const unsigned code = projected != 0 ? projected : geoKey(record.payload, geographicKey);
      if (code != 0) {
        system["epsg"] = code;
      }
    } else if (record.number == wktRecord) {
      system["wkt"] = fixedText(record.payload.data(), record.payload.size());
    }
  }
  if (system.empty()) {
    return {};
  }
  const nlohmann::ordered_json tag = {{"crs", system}};
  return tag.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace rdbtool
