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

#include <array>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <ostream>
#include <vector>

namespace rdbtool {

namespace {

using Json = nlohmann::ordered_json;
using container::Attribute;
using container::ComponentExtent;
using container::Database;
using container::StoredColumn;
using Bound = std::optional<double> ComponentExtent::*;

constexpr int nameWidth = 36;

std::string quoted(const std::string& text) {
  return apps::jsonText(text);
}

bool isCatalogueProtected(const Database& database) {
  return database.version() > 1;
}

/// What is to be said of a file of version 1.
std::string unprotected(const std::string& path) {
  return "catalogue without a checksum, so damage to it may go unnoticed; to protect it: rdbtool upgrade " +
         path;
}

/// How the blocks of an attribute are stored: as its first encoded block is, and how many blocks are encoded if not all.
/// Reads the head of one block at most.
std::string encodingOf(const Database& database, const std::string& name, const StoredColumn& stored) {
  std::string encoding = "raw";
  try {
    for (std::uint64_t block = 0; stored.encodedBlocks > 0 && encoding == "raw"; ++block) {
      encoding = database.encoding(name, block);
    }
  } catch (const container::Error&) {
    encoding = "damaged"; // what else is to be said of the file stays worth saying
  }
  const bool isPartial = stored.encodedBlocks > 0 && stored.encodedBlocks < stored.blocks;
  return isPartial ? encoding + " (" + std::to_string(stored.encodedBlocks) + " of " +
                         std::to_string(stored.blocks) + " blocks)"
                   : encoding;
}

std::optional<double> perRecord(std::uint64_t bytes, const Database& database) {
  const std::uint64_t records = database.recordCount();
  return records == 0 ? std::nullopt
                      : std::optional(static_cast<double>(bytes) / static_cast<double>(records));
}

/// Two digits after the point, whatever the locale.
std::string twoDigits(double value) {
  std::array<char, 400> text;
  return {text.data(),
          std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 2).ptr};
}

std::uint64_t bytesOf(const std::string& path) {
  std::error_code absent;
  const std::uintmax_t bytes = std::filesystem::file_size(path, absent);
  return absent ? 0 : bytes;
}

/// A number as JSON, or as the text "inf" or "-inf"; null for none.
Json jsonNumber(const std::optional<double>& value) {
  if (!value) {
    return nullptr;
  }
  return std::isfinite(*value) ? Json(*value) : Json(apps::numberText(*value));
}

Json jsonBounds(const std::vector<ComponentExtent>& extents, Bound bound) {
  Json values = extents.empty() ? Json(nullptr) : Json::array();
  for (const ComponentExtent& extent : extents) {
    values.push_back(jsonNumber(extent.*bound));
  }
  return values;
}

Json jsonMissing(const std::vector<ComponentExtent>& extents) {
  Json values = extents.empty() ? Json(nullptr) : Json::array();
  for (const ComponentExtent& extent : extents) {
    values.push_back(extent.missing);
  }
  return values;
}

Json jsonAttribute(const Database& database, const Attribute& attribute) {
  const StoredColumn stored = database.storage(attribute.name);
  const std::vector<ComponentExtent> extents = database.extents(attribute.name);
  return {{"name", attribute.name},
          {"type", container::name(attribute.type)},
          {"length", attribute.length},
          {"scale", attribute.scale},
          {"offset", attribute.offset},
          {"unit", attribute.unit},
          {"title", attribute.title},
          {"description", attribute.description},
          {"encoding", encodingOf(database, attribute.name, stored)},
          {"blocks", stored.blocks},
          {"encoded_blocks", stored.encodedBlocks},
          {"bytes", stored.bytes},
          {"bytes_per_record", jsonNumber(perRecord(stored.bytes, database))},
          {"minimum", jsonBounds(extents, &ComponentExtent::minimum)},
          {"maximum", jsonBounds(extents, &ComponentExtent::maximum)},
          {"missing", jsonMissing(extents)}};
}

void describeAsJson(const std::string& path, const Database& database, std::ostream& out) {
  Json description = {{"file", path},
                      {"version", database.version()},
                      {"catalogue_protected", isCatalogueProtected(database)},
                      {"bytes", bytesOf(path)},
                      {"records", database.recordCount()},
                      {"block_rows", database.blockRows()},
                      {"attributes", Json::array()},
                      {"metadata", Json::array()}};
  for (std::size_t i = 0; i < database.attributeCount(); ++i) {
    description["attributes"].push_back(jsonAttribute(database, database.attribute(i)));
  }
  for (const std::string& name : database.itemNames()) {
    description["metadata"].push_back({{"name", name}, {"bytes", database.item(name).value_or("").size()}});
  }
  out << apps::jsonText(description, 2) << "\n";
}

/// " (12.34 per record)", or nothing without records.
std::string perRecordText(std::uint64_t bytes, const Database& database) {
  const std::optional<double> ratio = perRecord(bytes, database);
  return ratio ? " (" + twoDigits(*ratio) + " per record)" : "";
}

void describeHead(const std::string& path, const Database& database, std::ostream& out) {
  const std::uint64_t bytes = bytesOf(path);
  out << apps::printable(path) << "\nversion     " << database.version()
      << (isCatalogueProtected(database) ? ", protected by checksums"
                                         : ", " + apps::printable(unprotected(path)))
      << "\nbytes       " << bytes << perRecordText(bytes, database) << "\nrecords     "
      << database.recordCount() << "\nblock rows  " << database.blockRows() << "\n";
}

void describeBounds(const char* title, const std::vector<ComponentExtent>& extents, Bound bound,
                    std::ostream& out) {
  out << "    " << title;
  for (const ComponentExtent& extent : extents) {
    out << " " << (extent.*bound ? apps::numberText(*(extent.*bound)) : "-");
  }
  out << "\n";
}

void describeMissing(const std::vector<ComponentExtent>& extents, std::ostream& out) {
  std::string counts;
  bool any = false;
  for (const ComponentExtent& extent : extents) {
    counts += " " + std::to_string(extent.missing);
    any = any || extent.missing > 0;
  }
  if (any) {
    out << "    missing" << counts << "\n";
  }
}

void describeStorage(const Database& database, const Attribute& attribute, std::ostream& out) {
  const StoredColumn stored = database.storage(attribute.name);
  out << "    stored  " << encodingOf(database, attribute.name, stored) << ", " << stored.bytes << " bytes"
      << perRecordText(stored.bytes, database) << "\n";
  const std::vector<ComponentExtent> extents = database.extents(attribute.name);
  if (!extents.empty()) {
    describeBounds("minimum", extents, &ComponentExtent::minimum, out);
    describeBounds("maximum", extents, &ComponentExtent::maximum, out);
    describeMissing(extents, out);
  }
}

void describeAttribute(const Database& database, const Attribute& attribute, std::ostream& out) {
  out << "  " << std::left << std::setw(nameWidth) << apps::printable(attribute.name) << " " << std::setw(8)
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
  describeStorage(database, attribute, out);
}

void describeAsText(const std::string& path, const Database& database, std::ostream& out) {
  describeHead(path, database, out);
  out << "attributes\n";
  for (std::size_t i = 0; i < database.attributeCount(); ++i) {
    describeAttribute(database, database.attribute(i), out);
  }
  out << "metadata\n";
  for (const std::string& name : database.itemNames()) {
    out << "  " << std::left << std::setw(nameWidth) << apps::printable(name) << " "
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
    if (!seen.isCatalogueProtected) {
      apps::printLine(out, path + ": version 1, " + unprotected(path));
    }
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
