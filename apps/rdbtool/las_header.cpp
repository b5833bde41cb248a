// SPDX-License-Identifier: BSD-3-Clause
// Reads and checks the header and the variable length records of a LAS file.
#include "apps/rdbtool/las_header.h"

#include "apps/common/number_text.h"
#include "apps/rdbtool/tool_error.h"

#include <algorithm>
#include <cmath>

namespace rdbtool {

namespace {

constexpr unsigned variableRecordHeadBytes = 54;
constexpr unsigned newestFormat = 10;

std::string number(std::uint64_t value) {
  return std::to_string(value);
}

unsigned headerBytesOfVersion(unsigned minor) {
  return minor <= 2 ? 227 : minor == 3 ? 235 : 375;
}

/// The fixed part of the header, at least as long as its version requires.
std::vector<std::byte> fixedPart(InputFile& file) {
  std::vector<std::byte> head = file.atMost(0, 375);
  const std::string& path = file.path();
  if (head.size() < 4 || fixedText(head.data(), 4) != "LASF") {
    throw failed(path + ": expected the signature LASF of a LAS file, found other bytes");
  }
  if (head.size() < 227) {
    throw failed(path + ": expected a LAS header of at least 227 bytes, found a file of " +
                 number(file.byteSize()));
  }
  const unsigned major = std::to_integer<unsigned>(head[24]);
  const unsigned minor = std::to_integer<unsigned>(head[25]);
  if (major != 1 || minor > 4) {
    throw failed(path + ": expected LAS version 1.0 to 1.4, found " + number(major) + "." + number(minor));
  }
  const unsigned declared = littleEndian<std::uint16_t>(&head[94]);
  const unsigned wanted = headerBytesOfVersion(minor);
  if (declared < wanted || head.size() < wanted) {
    throw failed(path + ": expected a header of at least " + number(wanted) + " bytes for LAS 1." +
                 number(minor) + ", found " +
                 number(declared < wanted ? declared : static_cast<unsigned>(head.size())));
  }
  return head;
}

/// Refuses compressed and unknown point records before the layout is used.
void checkFormat(const std::string& path, unsigned formatByte) {
  if (formatByte & 0x80U) {
    throw failed(path + ": expected uncompressed point records, found compressed ones (format byte " +
                 number(formatByte) + "); decompress the file first");
  }
  if (formatByte > newestFormat) {
    throw failed(path + ": expected point format 0 to 10, found " + number(formatByte));
  }
}

std::uint64_t pointCountOf(const std::string& path, const std::vector<std::byte>& head, unsigned minor) {
  const std::uint64_t shortCount = littleEndian<std::uint32_t>(&head[107]);
  if (minor < 4) {
    return shortCount;
  }
  const std::uint64_t longCount = littleEndian<std::uint64_t>(&head[247]);
  if (shortCount != 0 && shortCount != longCount) {
    throw failed(path + ": expected one point count, found " + number(shortCount) +
                 " in the 32-bit field of the header and " + number(longCount) + " in the 64-bit field");
  }
  return longCount;
}

void checkTransform(const std::string& path, const LasHeader& header) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (!std::isfinite(header.scale[axis]) || header.scale[axis] == 0 ||
        !std::isfinite(header.offset[axis])) {
      throw failed(path + ": expected a finite scale other than 0 and a finite offset on axis " +
                   std::string(1, "XYZ"[axis]) + ", found " + apps::numberText(header.scale[axis]) + " and " +
                   apps::numberText(header.offset[axis]));
    }
  }
}

std::vector<LasVariableRecord> variableRecords(InputFile& file, std::uint64_t from, std::uint64_t end,
                                               std::uint32_t count) {
  std::vector<LasVariableRecord> records;
  for (std::uint32_t index = 0; index < count; ++index) {
    const bool headFits = from + variableRecordHeadBytes <= end;
    const std::vector<std::byte> head =
        file.atMost(from, headFits ? variableRecordHeadBytes : static_cast<std::size_t>(end - from));
    const std::size_t length =
        head.size() == variableRecordHeadBytes ? littleEndian<std::uint16_t>(&head[20]) : 0;
    if (head.size() < variableRecordHeadBytes || from + variableRecordHeadBytes + length > end) {
      throw failed(file.path() + ": expected " + number(count) +
                   " variable length records before the points at " + number(end) + ", found " +
                   number(index) + " that fit");
    }
    records.push_back({fixedText(&head[2], 16), littleEndian<std::uint16_t>(&head[18]),
                       file.atMost(from + variableRecordHeadBytes, length)});
    from += variableRecordHeadBytes + length;
  }
  return records;
}

void checkPointsAreThere(const InputFile& file, const LasHeader& header) {
  const std::uint64_t held = (file.byteSize() - header.pointOffset) / header.recordBytes;
  if (held < header.pointCount) {
    throw failed(file.path() + ": expected " + number(header.pointCount) +
                 " points as in the header, found " + number(held));
  }
}

void checkRecordLength(const std::string& path, const LasHeader& header) {
  if (header.recordBytes < header.layout.minimumBytes) {
    throw failed(path + ": expected point records of at least " + number(header.layout.minimumBytes) +
                 " bytes for format " + number(header.format) + ", found " + number(header.recordBytes));
  }
}

void checkOffset(const InputFile& file, const LasHeader& header, unsigned headerBytes) {
  if (header.pointOffset < headerBytes || header.pointOffset > file.byteSize()) {
    throw failed(file.path() + ": expected the points between " + number(headerBytes) + " and " +
                 number(file.byteSize()) + ", found their offset to be " + number(header.pointOffset));
  }
}

} // namespace

std::string fixedText(const std::byte* bytes, std::size_t byteCount) {
  const char* text = reinterpret_cast<const char*>(bytes);
  return {text, std::find(text, text + byteCount, '\0')};
}

LasRecordLayout layoutOfFormat(unsigned format) {
  // Bytes of a record, positions of GPS time and of colour (0 where absent), near infrared, waveform packet.
  struct Row {
    unsigned bytes, gpsTime, colour;
    bool nearInfrared, waveform;
  };
  static constexpr Row rows[newestFormat + 1] = {
      {20, 0, 0, false, false},   {28, 20, 0, false, false},  {26, 0, 20, false, false},
      {34, 20, 28, false, false}, {57, 20, 0, false, true},   {63, 20, 28, false, true},
      {30, 22, 0, false, false},  {36, 22, 30, false, false}, {38, 22, 30, true, false},
      {59, 22, 0, false, true},   {67, 22, 30, true, true}};
  const Row& row = rows[format];
  LasRecordLayout layout;
  layout.minimumBytes = row.bytes;
  layout.extended = format >= 6;
  if (row.gpsTime != 0) {
    layout.gpsTime = row.gpsTime;
  }
  if (row.colour != 0) {
    layout.colour = row.colour;
  }
  layout.nearInfrared = row.nearInfrared;
  layout.waveform = row.waveform;
  return layout;
}

LasHeader readLasHeader(InputFile& file) {
  const std::vector<std::byte> head = fixedPart(file);
  const unsigned formatByte = std::to_integer<unsigned>(head[104]);
  checkFormat(file.path(), formatByte);
  LasHeader header;
  header.minorVersion = std::to_integer<unsigned>(head[25]);
  // The bit exists since version 1.2; its bytes were reserved before.
  header.adjustedGpsTime = header.minorVersion >= 2 && (littleEndian<std::uint16_t>(&head[6]) & 1U) != 0;
  header.creationDay = littleEndian<std::uint16_t>(&head[90]);
  header.creationYear = littleEndian<std::uint16_t>(&head[92]);
  header.pointOffset = littleEndian<std::uint32_t>(&head[96]);
  header.format = formatByte;
  header.recordBytes = littleEndian<std::uint16_t>(&head[105]);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    header.scale[axis] = littleEndian<double>(&head[131 + 8 * axis]);
    header.offset[axis] = littleEndian<double>(&head[155 + 8 * axis]);
  }
  header.layout = layoutOfFormat(header.format);
  checkRecordLength(file.path(), header);
  checkTransform(file.path(), header);
  const unsigned headerBytes = littleEndian<std::uint16_t>(&head[94]);
  checkOffset(file, header, headerBytes);
  header.records =
      variableRecords(file, headerBytes, header.pointOffset, littleEndian<std::uint32_t>(&head[100]));
  const auto isCompression = [](const LasVariableRecord& record) {
    return record.user == "laszip encoded" && record.number == 22204;
  };
  if (std::any_of(header.records.begin(), header.records.end(), isCompression)) {
    throw failed(file.path() +
                 ": expected uncompressed point records, found the variable length record of a compressor; "
                 "decompress the file first");
  }
  header.pointCount = pointCountOf(file.path(), head, header.minorVersion);
  checkPointsAreThere(file, header);
  return header;
}

} // namespace rdbtool
