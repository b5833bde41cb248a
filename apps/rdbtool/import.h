// SPDX-License-Identifier: BSD-3-Clause
// The two imports: point files and trajectories of open formats, into databases.
// The mapping is in docs/rdbtool.md.
#pragma once

#include "apps/rdbtool/calendar_date.h"
#include "apps/rdbtool/column_batch.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

namespace rdbtool {

/// The formats that are read.
enum class ImportFormat { las, sbet };

/// What an import is asked to do.
struct ImportRequest {
  std::string input;
  std::string output;
  std::optional<ImportFormat> format;        // told from content and extension where it is absent
  std::optional<std::chrono::sys_days> date; // a day in the week of the survey
  WriterSettings writer;
};

/// Imports a file and hands back the number of records. The output appears under its name when all of it is
/// written, and not at all on a failure.
///
/// \param notes  receives a line for all that is left behind or assumed
/// \errors  ToolError; riegl::rdb::Error from the writer
/// \threads one thread a request
std::uint64_t importFile(const ImportRequest& request, std::ostream& notes);

/// The same for an input known to be LAS 1.0 to 1.4.
std::uint64_t importLas(const ImportRequest& request, std::ostream& notes);
/// The same for an input known to be an SBET trajectory.
std::uint64_t importSbet(const ImportRequest& request, std::ostream& notes);

} // namespace rdbtool
