// SPDX-License-Identifier: BSD-3-Clause
// Writes numbers, texts and elements as JSON.
#include "json.h"

#include <charconv>
#include <cmath>
#include <type_traits>

namespace {

template <class T>
std::string number(T value) {
  if constexpr (std::is_floating_point_v<T>) {
    if (std::isnan(value)) {
      return "\"nan\"";
    }
    if (std::isinf(value)) {
      return value > 0 ? "\"inf\"" : "\"-inf\"";
    }
  }
  char digits[64];
  return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

template <class T>
std::string listOf(const void* elements, std::uint64_t count, int components) {
  const T* value = static_cast<const T*>(elements);
  std::string result = "[";
  for (std::uint64_t at = 0; at < count; ++at) {
    result += at == 0 ? "" : ", ";
    result += components > 1 ? "[" : "";
    for (int component = 0; component < components; ++component) {
      result += (component == 0 ? "" : ", ") + number(*value++);
    }
    result += components > 1 ? "]" : "";
  }
  return result + "]";
}

} // namespace

std::string json::text(std::string_view value) {
  static constexpr char digits[] = "0123456789abcdef";
  std::string result = "\"";
  for (const char c : value) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      (result += '\\') += c;
    } else if (byte < 0x20) {
      ((result += "\\u00") += digits[byte / 16]) += digits[byte % 16];
    } else {
      result += c;
    }
  }
  return result + '"';
}

std::string json::list(const Layout& layout, const void* elements, std::uint64_t count) {
  const auto is = [&](const char* name) { return layout.component == name; };
  const int n = layout.components;
  if (is("double"))
    return listOf<double>(elements, count, n);
  if (is("float"))
    return listOf<float>(elements, count, n);
  if (is("short"))
    return listOf<short>(elements, count, n);
  if (is("unsigned short"))
    return listOf<unsigned short>(elements, count, n);
  if (is("int"))
    return listOf<int>(elements, count, n);
  if (is("unsigned int"))
    return listOf<unsigned int>(elements, count, n);
  if (is("unsigned long long"))
    return listOf<unsigned long long>(elements, count, n);
  if (is("unsigned char"))
    return listOf<unsigned char>(elements, count, n);
  return "null";
}
