// SPDX-License-Identifier: BSD-3-Clause
// Text from files and users, made safe for terminals and for text outputs.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace apps {

/// The text with everything replaced that could control a terminal or reorder what a reader sees:
///
/// | Found | Shown as |
/// |---|---|
/// | C0 control characters (line feed and tab included), DEL | `\xNN` |
/// | a byte that is not part of valid UTF-8 | `\xNN` |
/// | C1 control characters (U+0080 to U+009F) | `\u00NN` |
/// | bidirectional embeddings, overrides and isolates (U+202A to U+202E, U+2066 to U+2069) | `\u20NN` |
///
/// The result is valid UTF-8 on one line. The replacement cannot be reversed: a backslash stays as it is.
///
/// \errors  std::bad_alloc
/// \threads safe
std::string printable(std::string_view text);

/// A JSON text whose strings show the same characters as `\uNNNN` escapes, so that a parser reads the same values.
///
/// \param json  valid JSON; line feeds and other white space between values stay
/// \errors      std::bad_alloc
/// \threads     safe
std::string printableJson(std::string_view json);

/// Writes the printable text and a line end in one piece.
///
/// \errors  std::bad_alloc; a failure of the stream is in the stream's state
void printLine(std::ostream& stream, std::string_view text);

} // namespace apps
