// SPDX-License-Identifier: BSD-3-Clause
// A warning for output names whose extension does not match the content.
#pragma once

#include <iosfwd>
#include <string>

namespace rdbtool {

enum class DatabaseContent { points, shots, trajectory };

/// Prints a warning where a load would read the database as something else: it treats exactly the extension .pofx
/// as a trajectory, .sodx as shots, and any other as points.
///
/// \param notes  receives at most one line
/// \errors  none
void noteOutputName(DatabaseContent content, const std::string& path, std::ostream& notes);

} // namespace rdbtool
