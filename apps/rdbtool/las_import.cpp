// SPDX-License-Identifier: BSD-3-Clause
// Imports LAS points: each part of a point record becomes an attribute; docs/rdbtool.md has the mapping.
#include "apps/common/interruption.h"
#include "apps/common/number_text.h"
#include "apps/common/printable_text.h"
#include "apps/rdbtool/import.h"
#include "apps/rdbtool/input_file.h"
#include "apps/rdbtool/las_extra_bytes.h"
#include "apps/rdbtool/las_header.h"
#include "apps/rdbtool/las_projection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ostream>

namespace rdbtool {

namespace {

constexpr double adjustedOrigin = 1e9; // seconds that adjusted GPS time subtracts
constexpr std::size_t pieceBytes = std::size_t{16} << 20;

/// Reads the point records piece by piece, in several passes if necessary.
class PointReader {
 public:
  PointReader(InputFile& lasFile, const LasHeader& checkedHeader) : file(lasFile), header(checkedHeader) {
    rowsAtOnce = std::clamp<std::size_t>(pieceBytes / header.recordBytes, 1, batchRows);
    rowsAtOnce = static_cast<std::size_t>(std::min<std::uint64_t>(rowsAtOnce, header.pointCount));
    bytes.resize(rowsAtOnce * header.recordBytes);
  }

  /// The largest number of records per visit.
  std::size_t mostRows() const { return rowsAtOnce; }

  /// Calls visit(first record's bytes, record count) over all points.
  template <typename Visit>
  void forEachPiece(const Visit& visit) {
    for (std::uint64_t row = 0; row < header.pointCount; row += rowsAtOnce) {
      const auto rows =
          static_cast<std::size_t>(std::min<std::uint64_t>(rowsAtOnce, header.pointCount - row));
      const std::span<std::byte> piece(bytes.data(), rows * header.recordBytes);
      file.readAt(header.pointOffset + row * header.recordBytes, piece);
      visit(static_cast<const std::byte*>(bytes.data()), rows);
    }
  }

 private:
  InputFile& file;
  const LasHeader& header;
  std::size_t rowsAtOnce;
  std::vector<std::byte> bytes;
};

/// Facts about all points that the first written record depends on.
struct Overview {
  double firstStamp = 0;
  bool stampsOutsideWeek = false;
  bool wideColours = false; // some channel needs more than 8 bits
};

Overview overviewOf(PointReader& reader, const LasHeader& header) {
  Overview overview;
  bool any = false;
  reader.forEachPiece([&](const std::byte* record, std::size_t rows) {
    for (std::size_t row = 0; row < rows; ++row, record += header.recordBytes) {
      if (header.layout.gpsTime) {
        const auto stamp = littleEndian<double>(record + *header.layout.gpsTime);
        overview.firstStamp = any ? overview.firstStamp : stamp;
        overview.stampsOutsideWeek |= !(stamp >= 0 && stamp < weekSeconds);
        any = true;
      }
      for (unsigned channel = 0; header.layout.colour && channel < 3; ++channel) {
        overview.wideColours |=
            littleEndian<std::uint16_t>(record + *header.layout.colour + 2 * channel) > 255;
      }
    }
  });
  return overview;
}

/// What is added to time stamps to make them seconds of the week, and the day of the time base.
struct TimeMapping {
  double addend = 0;
  std::chrono::sys_days epoch;
};

/// A day in the week of the survey: from the command line, or the day on which the file was created.
std::chrono::sys_days weekOfSurvey(const ImportRequest& request, const LasHeader& header) {
  if (request.date) {
    return *request.date;
  }
  const bool dated = header.creationYear >= 1980 && header.creationYear <= 9999 && header.creationDay >= 1 &&
                     header.creationDay <= 366;
  if (!dated) {
    return gpsOrigin;
  }
  const auto newYear = std::chrono::year(static_cast<int>(header.creationYear)) / std::chrono::January / 1;
  return std::chrono::sys_days(newYear) + std::chrono::days(header.creationDay - 1);
}

TimeMapping timeMapping(const ImportRequest& request, const LasHeader& header, const Overview& overview,
                        std::ostream& notes) {
  if (!header.adjustedGpsTime) {
    if (overview.stampsOutsideWeek) {
      apps::printLine(notes, request.input + ": expected GPS seconds of the week, found stamps outside 0 to "
                                             "604800; they are kept as they are");
    }
    return {0, epochForWeekSeconds(overview.firstStamp, weekOfSurvey(request, header))};
  }
  const double week = std::floor((overview.firstStamp + adjustedOrigin) / weekSeconds);
  if (!(week >= 0 && week < 1e5)) {
    apps::printLine(notes, request.input + ": expected adjusted GPS time, found a first stamp of " +
                               apps::numberText(overview.firstStamp) + "; the stamps are kept as they are");
    return {0, weekOfSurvey(request, header)};
  }
  // The addend is an integer and, outside the week of the origin, the sum is smaller than the stamp: the sum is exact.
  const double addend = adjustedOrigin - week * weekSeconds;
  const std::chrono::sys_days weekBegin = gpsOrigin + std::chrono::weeks(static_cast<int>(week));
  return {addend, epochForWeekSeconds(overview.firstStamp + addend, weekBegin)};
}

/// Turns point records into rows of the batch.
class PointWriter {
 public:
  PointWriter(Writer& writer, std::size_t mostRows, const LasHeader& checkedHeader,
              const ExtraBytes& described, double addend, bool wide)
      : batch(writer, mostRows), header(checkedHeader), extra(described), stampAddend(addend),
        wideColours(wide) {
    position = batch.add(attribute("riegl.xyz", ElementType::float64, "m", 3), sourceScaling());
    if (header.layout.gpsTime) {
      stamp = batch.add(attribute("riegl.timestamp", ElementType::float64, "s"));
    }
    amplitude = batch.add(attribute("riegl.amplitude", ElementType::uint16));
    targetIndex = batch.add(attribute("riegl.target_index", ElementType::uint8));
    targetCount = batch.add(attribute("riegl.target_count", ElementType::uint8));
    classification = batch.add(attribute("riegl.class", ElementType::uint16));
    addScanAngle();
    source = batch.add(attribute("riegl.source_index", ElementType::uint16));
    if (header.layout.colour) {
      colour = batch.add(attribute("riegl.rgba", ElementType::uint8, {}, 4));
      // A load binds the colours in place of this attribute and fails where it is missing.
      batch.add(attribute("riegl.direction_medium", ElementType::int8, {}, 3));
    }
    for (const ExtraBytesField& field : extra.fields) {
      extraColumns.push_back(batch.add(field.spec));
    }
  }

  void take(const std::byte* record, std::size_t rows) {
    for (std::size_t row = 0; row < rows; ++row, record += header.recordBytes) {
      putCommon(record, row);
      header.layout.extended ? putExtended(record, row) : putLegacy(record, row);
      if (header.layout.colour) {
        putColour(record + *header.layout.colour, row);
      }
      for (std::size_t index = 0; index < extraColumns.size(); ++index) {
        const Attribute& spec = extra.fields[index].spec;
        std::memcpy(batch.place(extraColumns[index], row), record + extra.fields[index].position,
                    byteSize(spec.type) * spec.length);
      }
    }
    batch.write(rows);
  }

 private:
  // The integers of the file, from which putCommon() makes the coordinates.
  std::vector<SourceScaling> sourceScaling() const {
    std::vector<SourceScaling> axes;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      axes.push_back({header.scale[axis], header.offset[axis]});
    }
    return axes;
  }

  void addScanAngle() {
    Attribute spec = attribute("riegl.scan_angle", ElementType::int8, "deg");
    if (header.layout.extended) {
      spec.type = ElementType::int16;
      spec.scale = 0.006;
    }
    scanAngle = batch.add(spec);
  }

  void putCommon(const std::byte* record, std::size_t row) {
    std::array<double, 3> place;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      place[axis] = littleEndian<std::int32_t>(record + 4 * axis) * header.scale[axis] + header.offset[axis];
    }
    batch.put(position, row, place);
    if (header.layout.gpsTime) {
      batch.put(stamp, row, littleEndian<double>(record + *header.layout.gpsTime) + stampAddend);
    }
    batch.put(amplitude, row, littleEndian<std::uint16_t>(record + 12));
  }

  void putLegacy(const std::byte* record, std::size_t row) {
    const unsigned returns = std::to_integer<unsigned>(record[14]);
    batch.put(targetIndex, row, static_cast<std::uint8_t>(returns & 7U));
    batch.put(targetCount, row, static_cast<std::uint8_t>((returns >> 3) & 7U));
    // The upper three bits are flags.
    batch.put(classification, row, static_cast<std::uint16_t>(std::to_integer<unsigned>(record[15]) & 31U));
    batch.put(scanAngle, row, littleEndian<std::int8_t>(record + 16));
    batch.put(source, row, littleEndian<std::uint16_t>(record + 18));
  }

  void putExtended(const std::byte* record, std::size_t row) {
    const unsigned returns = std::to_integer<unsigned>(record[14]);
    batch.put(targetIndex, row, static_cast<std::uint8_t>(returns & 15U));
    batch.put(targetCount, row, static_cast<std::uint8_t>(returns >> 4));
    batch.put(classification, row, std::to_integer<std::uint16_t>(record[16]));
    batch.put(scanAngle, row, littleEndian<std::int16_t>(record + 18));
    batch.put(source, row, littleEndian<std::uint16_t>(record + 20));
  }

  void putColour(const std::byte* channels, std::size_t row) {
    std::array<std::uint8_t, 4> rgba{0, 0, 0, 255};
    for (std::size_t channel = 0; channel < 3; ++channel) {
      const unsigned value = littleEndian<std::uint16_t>(channels + 2 * channel);
      rgba[channel] = static_cast<std::uint8_t>(wideColours ? value >> 8 : value);
    }
    batch.put(colour, row, rgba);
  }

  ColumnBatch batch;
  const LasHeader& header;
  const ExtraBytes& extra;
  double stampAddend;
  bool wideColours;
  std::size_t position = 0, stamp = 0, amplitude = 0, targetIndex = 0, targetCount = 0, classification = 0,
              scanAngle = 0, source = 0, colour = 0;
  std::vector<std::size_t> extraColumns;
};

void noteSkippedParts(const ImportRequest& request, const LasHeader& header, const ExtraBytes& extra,
                      std::ostream& notes) {
  const std::string ofFormat = " of point format " + std::to_string(header.format) + " skipped";
  if (header.layout.waveform) {
    apps::printLine(notes, request.input + ": waveform packets" + ofFormat);
  }
  if (header.layout.nearInfrared) {
    apps::printLine(notes, request.input + ": near infrared" + ofFormat);
  }
  for (const std::string& sentence : extra.skipped) {
    apps::printLine(notes, request.input + ": " + sentence);
  }
}

} // namespace

std::uint64_t importLas(const ImportRequest& request, std::ostream& notes) {
  InputFile file(request.input);
  const LasHeader header = readLasHeader(file);
  const ExtraBytes extra = describedExtraBytes(header);
  noteSkippedParts(request, header, extra, notes);
  PointReader reader(file, header);
  const Overview overview = overviewOf(reader, header);
  TimeMapping mapping;
  if (header.layout.gpsTime) {
    mapping = timeMapping(request, header, overview, notes);
  }
  const apps::InterruptionWatch watch;
  Writer writer(request.output, request.writer);
  PointWriter points(writer, reader.mostRows(), header, extra, mapping.addend, overview.wideColours);
  if (header.layout.gpsTime) {
    writer.setMetadata("riegl.time_base", timeBaseText(mapping.epoch, "GPS"));
  }
  if (const std::string tag = geoTagText(header.records); !tag.empty()) {
    writer.setMetadata("riegl.geo_tag", tag);
  }
  reader.forEachPiece([&](const std::byte* records, std::size_t rows) { points.take(records, rows); });
  writer.finish();
  return header.pointCount;
}

} // namespace rdbtool
