// SPDX-License-Identifier: BSD-3-Clause
// Checks on the values of a catalogue's rows. Internal to the container.
#pragma once

#include "container/read/connection.h"

#include <cstdint>
#include <string>

namespace container {

/// Raises the Error for a catalogue that contradicts itself.
[[noreturn]] void wrongCatalogue(const std::string& object, const std::string& expected,
                                 const std::string& found);

/// A column's value as error texts show it.
std::string shownValue(const Statement& row, int column);

// Each returns the value of a column of the current row, which has to be of the type and range asked for.
// `object` and `what` name row and value in the error text.
std::int64_t requireInteger(const Statement& row, int column, const std::string& object,
                            const std::string& what, std::int64_t least, std::int64_t greatest);
double requireFinite(const Statement& row, int column, const std::string& object, const std::string& what);
std::string requireText(const Statement& row, int column, const std::string& object, const std::string& what);
/// As requireText, with an empty text for NULL.
std::string textOrNull(const Statement& row, int column, const std::string& object, const std::string& what);

} // namespace container
