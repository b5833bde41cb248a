// SPDX-License-Identifier: BSD-3-Clause
// Makes LAS files byte by byte from the public layout, independent of the reader of the tool.
#include "tests/apps/rdbtool/las_file.h"

#include <cstring>
#include <fstream>

namespace support {

namespace {

template <typename T>
void append(std::string& bytes, T value) {
  char raw[sizeof value];
  std::memcpy(raw, &value, sizeof value);
  bytes.append(raw, sizeof value);
}

void appendShort(std::string& bytes, unsigned value) {
  append(bytes, static_cast<std::uint16_t>(value));
}
void appendByte(std::string& bytes, unsigned value) {
  append(bytes, static_cast<std::uint8_t>(value));
}

void appendText(std::string& bytes, std::string text, std::size_t width) {
  text.resize(width, '\0');
  bytes += text;
}

bool hasGpsTime(unsigned format) {
  return format != 0 && format != 2;
}
bool hasColour(unsigned format) {
  return format == 2 || format == 3 || format == 5 || format == 7 || format == 8 || format == 10;
}
bool hasWaveform(unsigned format) {
  return format == 4 || format == 5 || format == 9 || format == 10;
}
bool hasNearInfrared(unsigned format) {
  return format == 8 || format == 10;
}

void appendCore(std::string& bytes, const LasPoint& point, unsigned format) {
  append(bytes, point.x);
  append(bytes, point.y);
  append(bytes, point.z);
  appendShort(bytes, point.intensity);
  if (format < 6) {
    appendByte(bytes, point.returnNumber | point.returnCount << 3);
    appendByte(bytes, point.classification | point.flags << 5);
    append(bytes, static_cast<std::int8_t>(point.scanAngle));
    appendByte(bytes, 77); // user data
    appendShort(bytes, point.source);
    return;
  }
  appendByte(bytes, point.returnNumber | point.returnCount << 4);
  appendByte(bytes, point.flags);
  appendByte(bytes, point.classification);
  appendByte(bytes, 77);
  append(bytes, static_cast<std::int16_t>(point.scanAngle));
  appendShort(bytes, point.source);
}

std::string pointBytes(const LasPoint& point, unsigned format) {
  std::string bytes;
  appendCore(bytes, point, format);
  if (hasGpsTime(format)) {
    append(bytes, point.gpsTime);
  }
  for (std::size_t channel = 0; hasColour(format) && channel < 3; ++channel) {
    appendShort(bytes, point.rgb[channel]);
  }
  if (hasNearInfrared(format)) {
    appendShort(bytes, 4711);
  }
  if (hasWaveform(format)) {
    bytes.append(29, '\x5A');
  }
  return bytes + point.extra;
}

} // namespace

unsigned lasRecordBytes(unsigned format) {
  return static_cast<unsigned>(pointBytes(LasPoint(), format).size());
}

LasFile& LasFile::withRecord(const std::string& user, unsigned number, const std::string& payload) {
  appendShort(variableRecords, 0);
  appendText(variableRecords, user, 16);
  appendShort(variableRecords, number);
  appendShort(variableRecords, static_cast<unsigned>(payload.size()));
  appendText(variableRecords, "", 32);
  variableRecords += payload;
  ++recordCount;
  return *this;
}

LasFile& LasFile::withExtraFields(const std::vector<LasExtraField>& fields) {
  std::string payload;
  for (const LasExtraField& field : fields) {
    appendShort(payload, 0);
    appendByte(payload, field.type);
    appendByte(payload, field.options);
    appendText(payload, field.name, 32);
    payload.append(76, '\0'); // unused, no-data value, smallest and largest value
    for (const double value : field.scale) {
      append(payload, value);
    }
    for (const double value : field.offset) {
      append(payload, value);
    }
    payload.append(32, '\0'); // description
  }
  return withRecord("LASF_Spec", 4, payload);
}

unsigned LasFile::extraBytes() const {
  return points.empty() ? 0 : static_cast<unsigned>(points.front().extra.size());
}

std::string LasFile::header() const {
  const int headerBytes = (minor <= 2 ? 227 : minor == 3 ? 235 : 375) + headerBytesTooMany;
  const auto count = static_cast<std::uint32_t>(static_cast<int>(points.size()) + pointsTooMany);
  std::string bytes = signature;
  appendShort(bytes, 0);
  appendShort(bytes, globalEncoding);
  bytes.append(16, '\0');
  appendByte(bytes, major);
  appendByte(bytes, minor);
  appendText(bytes, "test", 32);
  appendText(bytes, "las_file.cpp", 32);
  appendShort(bytes, creationDay);
  appendShort(bytes, creationYear);
  appendShort(bytes, static_cast<unsigned>(headerBytes));
  append(bytes, static_cast<std::uint32_t>(headerBytes + static_cast<int>(variableRecords.size()) +
                                           pointOffsetTooMuch));
  append(bytes, static_cast<std::uint32_t>(static_cast<int>(recordCount) + recordsTooMany));
  appendByte(bytes, format | formatBits);
  appendShort(bytes, static_cast<unsigned>(static_cast<int>(lasRecordBytes(format) + extraBytes()) +
                                           recordBytesTooMany));
  const bool oldCountUsed = minor < 4 || format < 6;
  append(bytes, oldCountUsed ? count + static_cast<std::uint32_t>(oldCountTooMany) : 0);
  bytes.append(20, '\0'); // points by return
  for (const auto& values : {scale, offset}) {
    for (const double value : values) {
      append(bytes, value);
    }
  }
  bytes.append(48, '\0'); // extent
  if (minor >= 4) {
    bytes.append(20, '\0');
    append(bytes, std::uint64_t{count});
  }
  bytes.resize(static_cast<std::size_t>(headerBytes), '\0');
  return bytes;
}

std::string LasFile::bytes() const {
  std::string content = header() + variableRecords;
  for (const LasPoint& point : points) {
    content += pointBytes(point, format);
  }
  return content;
}

std::string LasFile::writeTo(const std::string& path) const {
  std::ofstream(path, std::ios::binary) << bytes();
  return path;
}

} // namespace support
