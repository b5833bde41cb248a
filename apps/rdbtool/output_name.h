// SPDX-License-Identifier: BSD-3-Clause
// A warning for output names whose extension does not match the content.
#pragma once

#include "apps/common/database_content.h"

#include <iosfwd>
#include <string>

namespace rdbtool {

using apps::contentByName;
using apps::DatabaseContent;

/// Prints a warning where a load would read the database as something else than its content.
///
/// \param notes  receives at most one line
/// \errors  none
void noteOutputName(DatabaseContent content, const std::string& path, std::ostream& notes);

} // namespace rdbtool
