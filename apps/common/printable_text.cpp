// SPDX-License-Identifier: BSD-3-Clause
// Text from files and users, made safe for terminals and for text outputs.
#include "apps/common/printable_text.h"

#include <array>
#include <cstdint>
#include <ostream>

namespace apps {

namespace {

/// One character of a text, or one byte that is not part of any.
struct Unit {
  std::string_view bytes;
  std::uint32_t codePoint = 0;
  bool valid = false;
};

/// Bytes of a character by its first byte; 0 for a byte that begins none.
std::size_t sequenceLength(unsigned char first) {
  return first < 0x80 ? 1 : first < 0xc2 ? 0 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : first < 0xf5 ? 4 : 0;
}

/// Whether a code point is encoded in its shortest form and is a Unicode scalar value.
bool isScalarValue(std::uint32_t codePoint, std::size_t length) {
  constexpr std::array<std::uint32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = codePoint >= 0xd800 && codePoint <= 0xdfff;
  return codePoint >= smallest[length] && codePoint <= 0x10ffff && !surrogate;
}

/// The first character of a text that is not empty.
Unit firstUnit(std::string_view text) {
  const auto byteAt = [text](std::size_t place) { return static_cast<unsigned char>(text[place]); };
  const Unit invalid{text.substr(0, 1), byteAt(0), false};
  const std::size_t length = sequenceLength(byteAt(0));
  if (length == 0 || length > text.size()) {
    return invalid;
  }
  std::uint32_t codePoint = length == 1 ? byteAt(0) : byteAt(0) & (0x7fU >> length);
  for (std::size_t place = 1; place < length; ++place) {
    if ((byteAt(place) & 0xc0U) != 0x80) {
      return invalid;
    }
    codePoint = codePoint << 6 | (byteAt(place) & 0x3fU);
  }
  return isScalarValue(codePoint, length) ? Unit{text.substr(0, length), codePoint, true} : invalid;
}

bool isControl(std::uint32_t codePoint) {
  return codePoint < 0x20 || (codePoint >= 0x7f && codePoint <= 0x9f);
}

bool isBidirectionalControl(std::uint32_t codePoint) {
  return (codePoint >= 0x202a && codePoint <= 0x202e) || (codePoint >= 0x2066 && codePoint <= 0x2069);
}

/// Appends a backslash, a letter and the last `digits` hexadecimal digits of a number.
void appendEscape(std::string& text, char letter, std::uint32_t number, unsigned digits) {
  text += {'\\', letter};
  while (digits > 0) {
    --digits;
    text += "0123456789abcdef"[(number >> (4 * digits)) & 15U];
  }
}

} // namespace

std::string printable(std::string_view text) {
  std::string shown;
  shown.reserve(text.size());
  while (!text.empty()) {
    const Unit unit = firstUnit(text);
    text.remove_prefix(unit.bytes.size());
    if (!unit.valid || (isControl(unit.codePoint) && unit.codePoint < 0x80)) {
      appendEscape(shown, 'x', unit.codePoint, 2);
    } else if (isControl(unit.codePoint) || isBidirectionalControl(unit.codePoint)) {
      appendEscape(shown, 'u', unit.codePoint, 4);
    } else {
      shown += unit.bytes;
    }
  }
  return shown;
}

std::string printableJson(std::string_view json) {
  std::string shown;
  shown.reserve(json.size());
  while (!json.empty()) {
    const Unit unit = firstUnit(json);
    json.remove_prefix(unit.bytes.size());
    // Valid JSON has characters below 0x20 only between its values, where they are white space.
    const bool control = unit.codePoint >= 0x20 && isControl(unit.codePoint);
    if (unit.valid && (control || isBidirectionalControl(unit.codePoint))) {
      appendEscape(shown, 'u', unit.codePoint, 4);
    } else {
      shown += unit.bytes;
    }
  }
  return shown;
}

void printLine(std::ostream& stream, std::string_view text) {
  stream << printable(text) + "\n";
}

} // namespace apps
