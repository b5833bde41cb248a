// SPDX-License-Identifier: BSD-3-Clause
// The two imports: LAS point files and SBET trajectories become databases; docs/rdbtool.md has the mapping.
#pragma once

#include "apps/rdbtool/calendar_date.h"
#include "apps/rdbtool/column_batch.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

namespace rdbtool {

/// The formats that can be imported.
enum class ImportFormat { las, sbet };

/// The options of an import.
struct ImportRequest {
  std::string input;
  std::string output;
  std::optional<ImportFormat> format;        // detected from content and extension if absent
  std::optional<std::chrono::sys_days> date; // a day in the week of the survey
  WriterSettings writer;
};

/// Imports a file. The output appears under its name when it is complete, and not at all after a failure.
///
/// \param notes  receives one line for each thing that is skipped or assumed
/// \return the number of records
/// \errors  ToolError; container::Error from the writer
/// \threads one thread per request
std::uint64_t importFile(const ImportRequest& request, std::ostream& notes);

/// The same for an input known to be LAS 1.0 to 1.4.
std::uint64_t importLas(const ImportRequest& request, std::ostream& notes);
/// The same for an input known to be an SBET trajectory.
std::uint64_t importSbet(const ImportRequest& request, std::ostream& notes);

} // namespace rdbtool
