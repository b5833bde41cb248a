// SPDX-License-Identifier: BSD-3-Clause
// How every program starts, ends and reports a failure.
#pragma once

#include <functional>
#include <iosfwd>

namespace apps {

/// Prints one line for the exception under way: "PROGRAM: " and its text, or "out of memory" for std::bad_alloc.
/// Call it inside a catch block.
///
/// \errors none; where memory is short nothing is allocated
void reportFailure(const char* program, std::ostream& err) noexcept;

/// Calls `work` and returns its status. An exception becomes a line of reportFailure and status 1.
int runGuarded(const char* program, std::ostream& err, const std::function<int()>& work) noexcept;

/// Flushes standard output.
///
/// \return whether everything has been written; otherwise one line on `err` says so
bool flushOutput(const char* program, std::ostream& out, std::ostream& err);

/// The whole of a program's `main`: makes standard descriptors that the caller has closed safe to use, turns a file
/// size limit into an error of the write (SIGXFSZ is ignored), runs the work guarded with std::cerr, and ends with
/// the signal that an InterruptionWatch has recorded, if any.
///
/// \return the exit status of the program
int runProgram(const char* program, const std::function<int()>& work);

} // namespace apps
