// SPDX-License-Identifier: BSD-3-Clause
// Alignment and grouping of text for people.
#include "apps/nimbra-host/people_text.h"

#include "apps/common/printable_text.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace nimbrahost {

std::size_t characterCount(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char character) {
    return (static_cast<unsigned char>(character) & 0xc0) != 0x80;
  }));
}

std::string leftAligned(std::string_view text, std::size_t width) {
  const std::size_t length = characterCount(text);
  return std::string(text) + std::string(width > length ? width - length : 0, ' ');
}

std::string rightAligned(std::string_view text, std::size_t width) {
  const std::size_t length = characterCount(text);
  return std::string(width > length ? width - length : 0, ' ') + std::string(text);
}

std::string grouped(std::uint64_t number) {
  std::string text = std::to_string(number);
  for (std::size_t place = text.size(); place > 3;) {
    place -= 3;
    text.insert(place, 1, ',');
  }
  return text;
}

std::string counted(std::uint64_t number, std::string_view noun) {
  return grouped(number) + " " + std::string(noun) + (number == 1 ? "" : "s");
}

std::string fixedPoint(double number, int decimals) {
  std::array<char, 400> text;
  const int length = std::snprintf(text.data(), text.size(), "%.*f", decimals, number);
  return {text.data(), static_cast<std::size_t>(std::max(length, 0))};
}

std::string byteText(double bytes) {
  constexpr std::array<const char*, 5> units = {"B", "kB", "MB", "GB", "TB"};
  std::size_t unit = 0;
  while (bytes >= 1000 && unit + 1 < units.size()) {
    bytes /= 1000;
    ++unit;
  }
  return fixedPoint(bytes, unit == 0 ? 0 : 1) + " " + units[unit];
}

std::string indented(std::string_view text, std::size_t indent) {
  std::string lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string line = apps::printable(text.substr(0, end));
    lines += line.empty() ? "\n" : std::string(indent, ' ') + line + "\n";
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

} // namespace nimbrahost
