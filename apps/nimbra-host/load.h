// SPDX-License-Identifier: BSD-3-Clause
// Runs a load and records its outcome. Only this file of the host calls the library.
#pragma once

#include "apps/nimbra-host/outcome.h"

#include <string>

namespace nimbrahost {

/// Whether a file is loaded as a trajectory: its extension is exactly ".pofx".
bool isTrajectory(const std::string& file);

/// Whether a file is loaded as shots: its extension is exactly ".sodx".
bool isShots(const std::string& file);

/// Loads `request.file` onto a new grid. The lines of the console are captured meanwhile, so only one load may run at a
/// time.
///
/// The time column of a trajectory is rebased on request: its time base is read through the database client first, and
/// `rebaseError` then holds the text of the first failure, empty for none. A point-cloud load always rebases its time
/// column.
/// \errors  none: exceptions of the library become part of the outcome
LoadOutcome runLoad(const LoadRequest& request);

/// Whether the file can be opened for reading.
/// \return an empty text, or the error text of the system
std::string whyUnreadable(const std::string& file);

} // namespace nimbrahost
