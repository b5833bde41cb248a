// SPDX-License-Identifier: BSD-3-Clause
// Text for people: columns of a fixed width, grouped digits, numbers with units.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace nimbrahost {

/// The text padded with blanks to a number of UTF-8 characters; a longer text is returned unchanged.
std::string leftAligned(std::string_view text, std::size_t width);
std::string rightAligned(std::string_view text, std::size_t width);

/// Number of characters of a UTF-8 text.
std::size_t characterCount(std::string_view text);

/// The number with its digits in groups of three: 5,000,000.
std::string grouped(std::uint64_t number);

/// A number and its noun: "1 field", "2 fields".
std::string counted(std::uint64_t number, std::string_view noun);

/// A number with a fixed number of digits after the point.
std::string fixedPoint(double number, int decimals);

/// A size or a rate with a decimal unit, such as "45.2 MB".
std::string byteText(double bytes);

/// The lines of a text, indented, each with a line end and escaped by apps::printable.
std::string indented(std::string_view text, std::size_t indent);

} // namespace nimbrahost
