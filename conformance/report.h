// SPDX-License-Identifier: BSD-3-Clause
// What rdb-conformance writes: the table for people, the list of promises, and JUnit XML.
#pragma once

#include "conformance/promise.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace conformance {

/// One line for a promise, and two more for a broken one.
void writeLine(std::ostream& stream, const Promise& promise, const Outcome& outcome);

/// The last line of the table.
void writeTotal(std::ostream& stream, const std::vector<Outcome>& outcomes);

/// All promises as a table in Markdown.
void writeList(std::ostream& stream);

/// \param outcomes  one per promise of `checked`, in their order
void writeJUnit(std::ostream& stream, const std::vector<Promise>& checked,
                const std::vector<Outcome>& outcomes);

} // namespace conformance
