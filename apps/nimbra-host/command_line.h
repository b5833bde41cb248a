// SPDX-License-Identifier: BSD-3-Clause
// The command line of nimbra-host; docs/nimbra-host.md describes it for users.
#pragma once

#include <iosfwd>

namespace nimbrahost {

/// Runs the program on its arguments.
///
/// \param out  receives the report, or the JSON object and nothing else
/// \param err  receives notes, and one line per failure
/// \return     0 loaded; 1 the load returned a text or threw an exception, or another requested output could
///             not be made; 2 wrong use; 3 the file cannot be read
/// \errors     none: every failure becomes a line and a status
int runHost(int argumentCount, const char* const* arguments, std::ostream& out, std::ostream& err);

} // namespace nimbrahost
