// SPDX-License-Identifier: BSD-3-Clause
// The command line of nimbra-host: what users type, and what the program answers.
// Docs/nimbra-host.md is the users' page.
#pragma once

#include <iosfwd>

namespace nimbrahost {

/// Runs the program on its arguments.
///
/// \param out  receives the report, or the JSON object and nothing else
/// \param err  receives notes, and one line for a failure
/// \return     0 loaded; 1 the load returned a text or raised, or something else that was asked for could
///             not be done; 2 wrong use; 3 the file cannot be read
/// \errors     none: all failures become a line and a status
int runHost(int argumentCount, const char* const* arguments, std::ostream& out, std::ostream& err);

} // namespace nimbrahost
