// SPDX-License-Identifier: BSD-3-Clause
// Whether the name of a database that was made has it loaded as what it is.
#pragma once

#include <iosfwd>
#include <string>

namespace rdbtool {

enum class DatabaseContent { points, shots, trajectory };

/// Notes a name by which a load takes the database for something else: hosts go by exactly the extensions .pofx
/// (trajectory) and .sodx (shots), and take all else for points.
///
/// \param notes  receives one line for such a name, nothing for any other
/// \errors  none
void noteOutputName(DatabaseContent content, const std::string& path, std::ostream& notes);

} // namespace rdbtool
