// SPDX-License-Identifier: BSD-3-Clause
// The output of `info` and `verify`: the description of a database, and the findings of a check.
#include "apps/rdbtool/report.h"

#include "apps/common/json_text.h"
#include "apps/common/number_text.h"
#include "apps/common/printable_text.h"
#include "apps/rdbtool/input_file.h"
#include "container/format/error.h"
#include "container/read/database.h"
#include "container/read/verify.h"

#include <iomanip>
#include <nlohmann/json.hpp>
#include <ostream>

namespace rdbtool {

namespace {

using Json = nlohmann::ordered_json;
using container::Attribute;
using container::Database;

std::string quoted(const std::string& text) {
  return apps::jsonText(text);
}

void describeAsJson(const std::string& path, const Database& database, std::ostream& out) {
  Json description = {{"file", path},
                      {"records", database.recordCount()},
                      {"block_rows", database.blockRows()},
                      {"attributes", Json::array()},
                      {"metadata", Json::array()}};
  for (std::size_t i = 0; i < database.attributeCount(); ++i) {
    const Attribute& attribute = database.attribute(i);
    description["attributes"].push_back({{"name", attribute.name},
                                         {"type", container::name(attribute.type)},
                                         {"length", attribute.length},
                                         {"scale", attribute.scale},
                                         {"offset", attribute.offset},
                                         {"unit", attribute.unit},
                                         {"title", attribute.title},
                                         {"description", attribute.description}});
  }
  for (const std::string& name : database.itemNames()) {
    description["metadata"].push_back({{"name", name}, {"bytes", database.item(name).value_or("").size()}});
  }
  out << apps::jsonText(description, 2) << "\n";
}

void describeAsText(const std::string& path, const Database& database, std::ostream& out) {
  out << apps::printable(path) << "\nrecords     " << database.recordCount() << "\nblock rows  "
      << database.blockRows() << "\nattributes\n";
  for (std::size_t i = 0; i < database.attributeCount(); ++i) {
    const Attribute& attribute = database.attribute(i);
    out << "  " << std::left << std::setw(36) << apps::printable(attribute.name) << " " << std::setw(8)
        << container::name(attribute.type) << " x " << attribute.length;
    if (attribute.scale != 1) {
      out << "  scale " << apps::numberText(attribute.scale);
    }
    if (attribute.offset != 0) {
      out << "  offset " << apps::numberText(attribute.offset);
    }
    if (!attribute.unit.empty()) {
      out << "  unit " << quoted(attribute.unit);
    }
    out << "\n";
  }
  out << "metadata\n";
  for (const std::string& name : database.itemNames()) {
    out << "  " << std::left << std::setw(36) << apps::printable(name) << " "
        << database.item(name).value_or("").size() << " bytes\n";
  }
}

std::string counted(std::uint64_t count, const std::string& thing) {
  return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

} // namespace

void describe(const std::string& path, bool json, std::ostream& out) {
  requireReadableFile(path);
  const Database database(path);
  json ? describeAsJson(path, database, out) : describeAsText(path, database, out);
}

bool verifyDatabase(const std::string& path, std::ostream& out) {
  requireReadableFile(path);
  const auto print = [&out](const std::string& what, const std::string& details) {
    apps::printLine(out, what + ": " + details);
  };
  try {
    const container::Verification seen = container::verify(path, print);
    std::string summary = path + ": " + counted(seen.blocks, "block") + ", " + std::to_string(seen.bytes) +
                          " bytes, " + counted(seen.findings, "finding");
    if (seen.withoutChecksum > 0) {
      summary += ", " + counted(seen.withoutChecksum, "block") + " without a checksum";
    }
    apps::printLine(out, summary);
    return seen.findings == 0;
  } catch (const container::Error& error) {
    print(error.what(), error.details());
    return false;
  }
}

} // namespace rdbtool
