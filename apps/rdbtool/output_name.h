// SPDX-License-Identifier: BSD-3-Clause
// A warning for output names whose extension does not match the content.
#pragma once

#include <iosfwd>
#include <string>

namespace rdbtool {

enum class DatabaseContent { points, shots, trajectory };

/// What a load reads a database of this name as: the extension .pofx is a trajectory, .sodx is shots, any other points.
DatabaseContent contentByName(const std::string& path);

/// Prints a warning where a load would read the database as something else than its content.
///
/// \param notes  receives at most one line
/// \errors  none
void noteOutputName(DatabaseContent content, const std::string& path, std::ostream& notes);

} // namespace rdbtool
