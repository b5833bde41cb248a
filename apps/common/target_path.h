// SPDX-License-Identifier: BSD-3-Clause
// The file that a path leads to, which need not exist yet.
#pragma once

#include <string>
#include <system_error>

namespace apps {

/// The end of a chain of symbolic links, which need not exist.
///
/// \param problem  receives why a link cannot be followed (a circle of links, say), cleared otherwise
/// \return         the path itself where it is not a symbolic link
std::string followLinks(const std::string& path, std::error_code& problem);

/// Whether two paths lead to the same file, however they are written and whether it exists or not.
bool sameFile(const std::string& one, const std::string& other);

} // namespace apps
