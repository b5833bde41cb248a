// SPDX-License-Identifier: BSD-3-Clause
// Makes databases of a synthetic survey: its scan, its shots, or its trajectory.
// What the databases hold: docs/rdbtool.md
#pragma once

#include "apps/rdbtool/column_batch.h"
#include "apps/rdbtool/survey.h"

#include <cstdint>
#include <string>
#include <vector>

namespace rdbtool {

/// Which view of the survey is made.
enum class SynthKind { scan, shots, trajectory };

/// What a synthesis is asked to do.
struct SynthRequest {
  SynthKind kind = SynthKind::scan;
  std::uint64_t records = 0;
  std::uint64_t seed = 0;
  std::string output;
  std::vector<std::string> columns; // none: all; names with or without "riegl."
  std::vector<std::string> without; // metadata left out: "item" or "item:key"
  std::uint64_t pulseRateHz = 100000;
  std::uint64_t trajectoryRateHz = 200;
  std::string leverArmFile; // none: not written
  WriterSettings writer;
};

/// Makes the database. The same request gives the same rows, and fewer records of a seed are a prefix of
/// more. The output appears under its name when all of it is written, and not at all on a failure.
///
/// \errors  ToolError (wrong use): an unknown column or metadata item, more records than the day is long, one
///          file for database and lever arm; apps::OutputError; riegl::rdb::Error from the writer
/// \threads one thread a request
void synthesise(const SynthRequest& request);

/// A column of a scan: how one record of one shot's echo is stored.
struct ScanColumn {
  AttributeSpec spec;
  void (*put)(const Shot& shot, unsigned echo, std::byte* target);
};
/// All columns of a scan in the order they are written.
const std::vector<ScanColumn>& scanColumns();

/// A column of a database of shots.
struct ShotColumn {
  AttributeSpec spec;
  void (*put)(const Shot& shot, std::byte* target);
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
