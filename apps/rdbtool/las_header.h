// SPDX-License-Identifier: BSD-3-Clause
// The header and the variable length records of a LAS file, by the public LAS 1.0 to 1.4 specifications of the ASPRS.
#pragma once

#include "apps/rdbtool/input_file.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace rdbtool {

/// One variable length record: user id, record id and payload.
struct LasVariableRecord {
  std::string user;
  unsigned number = 0;
  std::vector<std::byte> payload;
};

/// Byte positions in a point record; an absent part has none.
struct LasRecordLayout {
  unsigned minimumBytes = 20;
  bool extended = false; // formats 6 and up: four-bit return numbers, whole classes, fine scan angles
  std::optional<unsigned> gpsTime;
  std::optional<unsigned> colour;
  bool nearInfrared = false;
  bool waveform = false;
};

/// The header, checked against the file: the counts agree and every point is present.
struct LasHeader {
  unsigned minorVersion = 0;
  bool adjustedGpsTime = false; // stamps are GPS seconds less 1e9, not seconds of the week
  unsigned creationDay = 0;     // day of the year, from 1; 0 if not given
  unsigned creationYear = 0;
  std::uint64_t pointOffset = 0;
  std::uint64_t pointCount = 0;
  unsigned format = 0;
  unsigned recordBytes = 0;
  std::array<double, 3> scale{};
  std::array<double, 3> offset{};
  LasRecordLayout layout;
  std::vector<LasVariableRecord> records;
};

/// Reads the header and the variable length records, and checks them against each other and the file's size.
///
/// \errors  ToolError: failed where the content is not uncompressed LAS 1.0 to 1.4, is truncated or contradicts
///          itself; unreadable where the file cannot be read
LasHeader readLasHeader(InputFile& file);

/// The layout of a point data record format.
/// \param format  0 to 10
LasRecordLayout layoutOfFormat(unsigned format);

/// Text of at most `byteCount` bytes that ends at the first zero byte, if there is one.
std::string fixedText(const std::byte* bytes, std::size_t byteCount);

} // namespace rdbtool
