// SPDX-License-Identifier: BSD-3-Clause
// Makes databases of a synthetic survey: scan, shots, or trajectory; docs/rdbtool.md describes their content.
#pragma once

#include "apps/rdbtool/column_batch.h"
#include "apps/rdbtool/survey.h"

#include <cstdint>
#include <string>
#include <vector>

namespace rdbtool {

/// The content of the database.
enum class SynthKind { scan, shots, trajectory };

/// The options of a synthesis.
struct SynthRequest {
  SynthKind kind = SynthKind::scan;
  std::uint64_t records = 0;
  std::uint64_t seed = 0;
  std::string output;
  std::vector<std::string> columns; // empty for all; names with or without "riegl."
  std::vector<std::string> without; // metadata to omit: "item" or "item:key"
  std::uint64_t pulseRateHz = 100000;
  std::uint64_t trajectoryRateHz = 200;
  std::string leverArmFile; // empty for none
  WriterSettings writer;
};

/// Makes the database. Equal requests give equal rows, and a shorter database is a prefix of a longer one with the
/// same seed. The output appears under its name when it is complete, and not at all after a failure.
///
/// \errors  ToolError (wrong use): an unknown column or metadata item, more records than fit in the day, one
///          file for database and lever arm; apps::OutputError; container::Error from the writer
/// \threads one thread per request
void synthesise(const SynthRequest& request);

/// A column of a scan, and how the value of one echo is stored.
struct ScanColumn {
  Attribute spec;
  void (*put)(const Shot& shot, unsigned echo, std::byte* target);
  std::vector<SourceScaling> source = {}; // see ColumnBatch::add
};
/// All columns of a scan in the order they are written.
const std::vector<ScanColumn>& scanColumns();

/// A column of a database of shots, and how the value of one shot is stored.
struct ShotColumn {
  Attribute spec;
  void (*put)(const Shot& shot, std::byte* target);
  std::vector<SourceScaling> source = {}; // see ColumnBatch::add
};
const std::vector<ShotColumn>& shotColumns();

/// Appends the trajectory's records to the writer, all columns.
void writeTrajectory(Writer& writer, const Survey& survey, const SynthRequest& request);

/// Stores a value of the attribute's own type.
template <typename T>
void store(std::byte* target, const T& value) {
  std::memcpy(target, &value, sizeof value);
}

} // namespace rdbtool
