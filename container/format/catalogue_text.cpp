// SPDX-License-Identifier: BSD-3-Clause
// Writes lines of the canonical text and sums them up.
#include "container/format/catalogue_text.h"

#include "container/format/part_checksum.h"

#include <array>
#include <bit>
#include <charconv>

namespace container {
namespace {

void append(std::int64_t number, std::string& text) {
  std::array<char, 20> digits; // of -9223372036854775808
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  text += ' ';
  text.append(digits.data(), end);
}

void append(double number, std::string& text) {
  const auto bits = std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number);
  text += ' ';
  for (int shift = 60; shift >= 0; shift -= 4) {
    text += "0123456789abcdef"[(bits >> shift) & 15];
  }
}

void append(std::string_view value, std::string& text) {
  append(static_cast<std::int64_t>(value.size()), text);
  text += ':';
  text += value;
}

template <class Value>
void append(const std::optional<Value>& value, std::string& text) {
  if (value) {
    append(*value, text);
  } else {
    text += " -";
  }
}

template <class... Values>
void appendFields(std::string& text, const char* word, const Values&... values) {
  text += word;
  (append(values, text), ...);
  text += '\n';
}

} // namespace

void appendLine(const DatabaseRow& row, std::string& text) {
  appendFields(text, "database", row.records, row.blockRows);
}

void appendLine(const AttributeRow& row, std::string& text) {
  appendFields(text, "attribute", row.id, row.name, row.type, row.length, row.scale, row.offset, row.unit,
               row.title, row.description);
}

void appendLine(const MetadataRow& row, std::string& text) {
  appendFields(text, "metadata", row.name, row.value);
}

void appendLine(const BlockRow& row, std::string& text) {
  appendFields(text, "block", row.attribute, row.number, row.encoding, row.checksum, row.bytes);
}

void appendLine(const ExtentRow& row, std::string& text) {
  appendFields(text, "extent", row.attribute, row.number, row.component, row.minimum, row.maximum,
               row.missing);
}

std::uint32_t TextChecksum::value() {
  takePending();
  return checksum;
}

void TextChecksum::takePending() {
  checksum = continuedChecksum(checksum, pending.data(), pending.size());
  pending.clear();
}

} // namespace container
