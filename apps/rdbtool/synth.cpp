// SPDX-License-Identifier: BSD-3-Clause
// Makes databases of a synthetic survey: scan, shots, or trajectory.
#include "apps/rdbtool/synth.h"

#include "apps/common/interruption.h"
#include "apps/common/output_file.h"
#include "apps/rdbtool/input_file.h"
#include "apps/rdbtool/synth_metadata.h"
#include "apps/rdbtool/tool_error.h"

#include <algorithm>
#include <memory>
#include <set>

namespace rdbtool {

namespace {

constexpr std::uint64_t fastestRateHz = 10000000;

std::string fullName(const std::string& name) {
  return name.rfind("riegl.", 0) == 0 ? name : "riegl." + name;
}

/// The requested columns in the order of the table; all where none is requested.
template <typename Column>
std::vector<Column> chosen(const std::vector<Column>& table, const std::vector<std::string>& names) {
  std::set<std::string> wanted;
  for (const std::string& name : names) {
    wanted.insert(fullName(name));
  }
  if (wanted.count("riegl.rgba") != 0) {
    wanted.insert("riegl.direction_medium"); // a load binds the colours in place of it
  }
  std::vector<Column> columns;
  for (const Column& column : table) {
    if (names.empty() || wanted.erase(column.spec.name) > 0) {
      columns.push_back(column);
    }
  }
  if (!names.empty() && !wanted.empty()) {
    throw wrongUse("--columns: expected columns of this kind of database, found \"" + *wanted.begin() + "\"");
  }
  return columns;
}

template <typename Column>
void addColumns(ColumnBatch& batch, const std::vector<Column>& columns) {
  for (const Column& column : columns) {
    batch.add(column.spec, column.source);
  }
}

void writeScan(Writer& writer, const Survey& survey, const SynthRequest& request) {
  const std::vector<ScanColumn> columns = chosen(scanColumns(), request.columns);
  ColumnBatch batch(writer);
  addColumns(batch, columns);
  ShotStream shots(survey);
  Shot shot;
  unsigned echo = 0;
  for (std::uint64_t first = 0; first < request.records; first += batchRows) {
    const auto rows = static_cast<std::size_t>(std::min<std::uint64_t>(batchRows, request.records - first));
    for (std::size_t row = 0; row < rows; ++row) {
      if (echo == shot.echoes.count) {
        shot = shots.next();
        echo = 0;
      }
      for (std::size_t column = 0; column < columns.size(); ++column) {
        columns[column].put(shot, echo, batch.place(column, row));
      }
      ++echo;
    }
    batch.write(rows);
  }
}

void writeShots(Writer& writer, const Survey& survey, const SynthRequest& request) {
  const std::vector<ShotColumn> columns = chosen(shotColumns(), request.columns);
  ColumnBatch batch(writer);
  addColumns(batch, columns);
  ShotStream shots(survey);
  for (std::uint64_t first = 0; first < request.records; first += batchRows) {
    const auto rows = static_cast<std::size_t>(std::min<std::uint64_t>(batchRows, request.records - first));
    for (std::size_t row = 0; row < rows; ++row) {
      const Shot shot = shots.next();
      for (std::size_t column = 0; column < columns.size(); ++column) {
        columns[column].put(shot, batch.place(column, row));
      }
    }
    batch.write(rows);
  }
}

void checkRate(const std::string& option, std::uint64_t rateHz) {
  if (rateHz < 1 || rateHz > fastestRateHz) {
    throw wrongUse(option + ": expected 1 to " + std::to_string(fastestRateHz) + " per second, found " +
                   std::to_string(rateHz));
  }
}

/// Time stamps are seconds of one day, so a flight must end before midnight.
void checkDay(const SynthRequest& request, const Survey& survey) {
  const std::uint64_t step = request.kind == SynthKind::trajectory ? ticksPerSecond / request.trajectoryRateHz
                                                                   : survey.ticksPerShot();
  const std::uint64_t most = (86400 * ticksPerSecond - survey.startTicks()) / step;
  if (request.records > most) {
    throw wrongUse("--records: expected at most " + std::to_string(most) +
                   ", so that the flight ends before midnight, found " + std::to_string(request.records));
  }
}

/// The complete lever-arm file before it takes its name; null for an empty path.
std::unique_ptr<apps::OutputFile> writeLeverArm(const std::string& path) {
  if (path.empty()) {
    return nullptr;
  }
  auto file = std::make_unique<apps::OutputFile>(path);
  file->write("leverarm:0.1:0.2:0.3\nmisalignment:0:0:1.5\n");
  return file;
}

} // namespace

void synthesise(const SynthRequest& request) {
  checkRate("--pulse-rate", request.pulseRateHz);
  checkRate("--trajectory-rate", request.trajectoryRateHz);
  if (!request.leverArmFile.empty()) {
    requireDistinct(request.output, request.leverArmFile);
  }
  const Survey survey(request.seed, request.pulseRateHz);
  checkDay(request, survey);
  const auto metadata = syntheticMetadata(request.kind, survey, request.without);
  const apps::InterruptionWatch watch;
  const auto leverArm = writeLeverArm(request.leverArmFile);
  Writer writer(request.output, request.writer);
  for (const auto& [name, value] : metadata) {
    writer.setMetadata(name, value);
  }
  switch (request.kind) {
  case SynthKind::scan:
    writeScan(writer, survey, request);
    break;
  case SynthKind::shots:
    writeShots(writer, survey, request);
    break;
  case SynthKind::trajectory:
    writeTrajectory(writer, survey, request);
    break;
  }
  writer.finish();
  if (leverArm) {
    leverArm->putInPlace();
  }
}

} // namespace rdbtool
