// SPDX-License-Identifier: BSD-3-Clause
// Makes LAS files byte by byte from the public layout, independent of the reader of the tool.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace support {

/// The values of one point.
struct LasPoint {
  std::int32_t x = 0, y = 0, z = 0;
  unsigned intensity = 0;
  unsigned returnNumber = 1;
  unsigned returnCount = 1;
  unsigned classification = 0;
  unsigned flags = 0; // of the classification byte of formats 0 to 5, or the flag byte of the others
  int scanAngle = 0;
  unsigned source = 0;
  double gpsTime = 0;
  std::array<unsigned, 3> rgb{};
  std::string extra; // bytes behind the standard part
};

/// A description of extra bytes, 192 bytes in the file.
struct LasExtraField {
  std::string name;
  unsigned type = 0;
  unsigned options = 0;
  std::array<double, 3> scale{};
  std::array<double, 3> offset{};
};

/// A LAS file under construction; tests set the members that make it invalid.
class LasFile {
 public:
  LasFile(unsigned minorVersion, unsigned pointFormat) : minor(minorVersion), format(pointFormat) {}

  LasFile& with(const LasPoint& point) {
    points.push_back(point);
    return *this;
  }
  LasFile& withExtraFields(const std::vector<LasExtraField>& fields);
  LasFile& withRecord(const std::string& user, unsigned number, const std::string& payload);

  std::string bytes() const;
  /// Writes the file and returns its path.
  std::string writeTo(const std::string& path) const;

  std::string signature = "LASF";
  unsigned major = 1;
  unsigned minor;
  unsigned format;
  unsigned formatBits = 0;
  unsigned globalEncoding = 0;
  unsigned creationDay = 0;
  unsigned creationYear = 0;
  std::array<double, 3> scale{0.01, 0.01, 0.01};
  std::array<double, 3> offset{};
  int headerBytesTooMany = 0;
  int recordBytesTooMany = 0;
  int pointOffsetTooMuch = 0;
  int recordsTooMany = 0; // more variable length records in the header than in the file
  int pointsTooMany = 0;
  int oldCountTooMany = 0; // in the place that versions before 1.4 have

 private:
  unsigned extraBytes() const;
  std::string header() const;

  std::vector<LasPoint> points;
  std::string variableRecords;
  unsigned recordCount = 0;
};

/// Bytes of the standard part of a point record.
unsigned lasRecordBytes(unsigned format);

} // namespace support
