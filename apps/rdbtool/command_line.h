// SPDX-License-Identifier: BSD-3-Clause
// The command line of rdbtool; docs/rdbtool.md describes it for users.
#pragma once

#include <iosfwd>

namespace rdbtool {

/// Runs the program on its arguments.
///
/// \param out  receives the output of the command
/// \param err  receives warnings, and one line per failure
/// \return     0 done, 1 failed, 2 wrong use, 3 an input file cannot be read
/// \errors     none: every failure becomes a line and a status
int runTool(int argumentCount, const char* const* arguments, std::ostream& out, std::ostream& err);

} // namespace rdbtool
