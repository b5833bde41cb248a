// SPDX-License-Identifier: BSD-3-Clause
// Pieces of text for people: columns of a fixed width, grouped digits, and nothing that upsets a terminal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace nimbrahost {

/// The text filled up with blanks to a number of characters; a longer text stays as it is. Characters are
/// counted in UTF-8.
std::string leftAligned(std::string_view text, std::size_t width);
std::string rightAligned(std::string_view text, std::size_t width);

/// Characters of a UTF-8 text.
std::size_t characterCount(std::string_view text);

/// The number with its digits in groups of three: 5,000,000.
std::string grouped(std::uint64_t number);

/// A number and its noun: "1 field", "2 fields".
std::string counted(std::uint64_t number, std::string_view noun);

/// A number with so many digits behind the point.
std::string fixedPoint(double number, int decimals);

/// A size or a rate in the decimal unit that suits it, such as "45.2 MB".
std::string byteText(double bytes);

/// The lines of a text, each with an indent in front and a line end behind, control characters as \xNN.
std::string indented(std::string_view text, std::size_t indent);

} // namespace nimbrahost
