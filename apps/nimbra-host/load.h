// SPDX-License-Identifier: BSD-3-Clause
// Runs a load and keeps everything that comes of it. The only place of the host that calls the library.
#pragma once

#include "apps/nimbra-host/outcome.h"

#include <string>

namespace nimbrahost {

/// Whether a file is taken for a trajectory: its extension is exactly ".pofx".
bool isTrajectory(const std::string& file);

/// Whether a load takes a file for one of shots: its extension is exactly ".sodx".
bool isShots(const std::string& file);

/// Loads `request.file` onto a fresh grid. Lines of the console are caught meanwhile, so one load at a time.
///
/// A trajectory's time column is rebased where that is asked for: its time base is read through the database
/// client first, and `rebaseError` then holds the text of the first failure, empty for none. A point-cloud
/// load rebases its time column itself.
/// \errors  none: exceptions of the library become part of the outcome
LoadOutcome runLoad(const LoadRequest& request);

/// Whether the file can be opened for reading.
/// \returns an empty text, or why not, in the system's words
std::string whyUnreadable(const std::string& file);

} // namespace nimbrahost
