// SPDX-License-Identifier: BSD-3-Clause
// The described extra bytes of LAS 1.4 point records, as attributes named las.<name>.
#include "apps/rdbtool/las_extra_bytes.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace rdbtool {

namespace {

constexpr std::size_t descriptionBytes = 192;
constexpr unsigned scaleFlag = 8;
constexpr unsigned offsetFlag = 16;

/// The scalar types in the order of their numbers, from 1.
constexpr ElementType plainTypes[] = {
    ElementType::uint8, ElementType::int8,   ElementType::uint16, ElementType::int16,   ElementType::uint32,
    ElementType::int32, ElementType::uint64, ElementType::int64,  ElementType::float32, ElementType::float64};

/// The name of the attribute: printable ASCII without blanks.
std::string attributeName(const std::string& given) {
  std::string name = "las.";
  for (const char letter : given) {
    name += letter > ' ' && letter <= '~' ? letter : '_';
  }
  return name;
}

/// Copies scale and offset; false where the values of one field have different ones.
bool takeTransform(const std::byte* description, Attribute& spec) {
  const unsigned flags = std::to_integer<unsigned>(description[3]);
  for (unsigned value = 0; value < spec.length; ++value) {
    const double scale =
        flags & scaleFlag ? littleEndian<double>(description + 112 + std::size_t{8} * value) : 1.0;
    const double offset =
        flags & offsetFlag ? littleEndian<double>(description + 136 + std::size_t{8} * value) : 0.0;
    if (value > 0 && (scale != spec.scale || offset != spec.offset)) {
      return false;
    }
    spec.scale = scale;
    spec.offset = offset;
  }
  return std::isfinite(spec.scale) && spec.scale != 0 && std::isfinite(spec.offset);
}

/// Text from a file; everything but printable ASCII becomes an underscore.
std::string plainText(const std::byte* bytes, std::size_t byteCount) {
  std::string text = fixedText(bytes, byteCount);
  std::replace_if(
      text.begin(), text.end(), [](char letter) { return letter < ' ' || letter > '~'; }, '_');
  return text;
}

/// Reads one description after the other and counts the bytes that they describe.
class Walk {
 public:
  explicit Walk(const LasHeader& checkedHeader)
      : header(checkedHeader), position(checkedHeader.layout.minimumBytes) {}

  /// False where the positions of the remaining fields are unknown.
  bool take(const std::byte* description) {
    const unsigned type = std::to_integer<unsigned>(description[2]);
    const std::string name = plainText(description + 4, 32);
    if (type > 30) {
      result.skipped.push_back("extra bytes \"" + name + "\": unknown type " + std::to_string(type) +
                               ", skipped together with all extra bytes after it");
      return false;
    }
    if (type == 0) {
      const unsigned opaqueBytes = std::to_integer<unsigned>(description[3]);
      result.skipped.push_back("extra bytes \"" + name + "\": " + std::to_string(opaqueBytes) +
                               " bytes without a type, skipped");
      position += opaqueBytes;
      return true;
    }
    return takeTyped(description, type, name);
  }

  ExtraBytes finish() {
    if (position < header.recordBytes) {
      result.skipped.push_back(std::to_string(header.recordBytes - position) +
                               " bytes of each point record without a description, skipped");
    }
    return std::move(result);
  }
  /// Treats the rest of the record as described.
  void giveUp() { position = header.recordBytes; }

 private:
  bool takeTyped(const std::byte* description, unsigned type, const std::string& name) {
    ExtraBytesField field;
    field.position = position;
    field.spec.name = attributeName(name);
    field.spec.type = plainTypes[(type - 1) % 10];
    field.spec.length = (type - 1) / 10 + 1;
    field.spec.description = plainText(description + 160, 32);
    const auto fieldBytes = static_cast<unsigned>(byteSize(field.spec.type)) * field.spec.length;
    if (position + fieldBytes > header.recordBytes) {
      result.skipped.push_back("extra bytes \"" + name +
                               "\": reach past the end of the point record, skipped");
      return false;
    }
    position += fieldBytes;
    if (name.empty() || !names.insert(field.spec.name).second || !takeTransform(description, field.spec)) {
      result.skipped.push_back("extra bytes \"" + name +
                               "\": no unique name, or no single scale and offset, skipped");
      return true;
    }
    result.fields.push_back(field);
    return true;
  }

  const LasHeader& header;
  unsigned position;
  std::set<std::string> names;
  ExtraBytes result;
};

} // namespace

ExtraBytes describedExtraBytes(const LasHeader& header) {
  Walk walk(header);
  for (const LasVariableRecord& record : header.records) {
    if (record.user != "LASF_Spec" || record.number != 4) {
      continue;
    }
    for (std::size_t at = 0; at + descriptionBytes <= record.payload.size(); at += descriptionBytes) {
      if (!walk.take(&record.payload[at])) {
        walk.giveUp();
        return walk.finish();
      }
    }
  }
  return walk.finish();
}

} // namespace rdbtool
