// SPDX-License-Identifier: BSD-3-Clause
// The command line of rdbtool: what users type, and what the program answers.
// Docs/rdbtool.md is the users' page.
#pragma once

#include <iosfwd>

namespace rdbtool {

/// Runs the program on its arguments.
///
/// \param out  receives what was asked for
/// \param err  receives notes, and one line for a failure
/// \return     0 done, 1 the work failed, 2 wrong use, 3 an input file cannot be read
/// \errors     none: all failures become a line and a status
int runTool(int argumentCount, const char* const* arguments, std::ostream& out, std::ostream& err);

} // namespace rdbtool
