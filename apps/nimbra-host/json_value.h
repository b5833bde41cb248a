// SPDX-License-Identifier: BSD-3-Clause
// Single JSON values: texts, numbers and elements of columns.
#pragma once

#include "apps/nimbra-host/elements.h"
#include "arrays/nimbra/element_text.h"

#include <cmath>
#include <string>
#include <string_view>
#include <type_traits>

namespace nimbrahost {

/// Appends a text in quotation marks. Bytes that are not UTF-8 become U+FFFD, so that the result is valid JSON; control
/// characters are escaped.
void appendJsonText(std::string& json, std::string_view text);

/// Appends a number as the shortest text that reads back to the same value of its type. Not-a-number and the
/// infinities become the texts "nan", "inf", "-inf". Negative zero is written -0.0, because readers parse -0
/// as an integer and lose its sign.
template <class Scalar>
void appendJsonNumber(std::string& json, Scalar value) {
  if constexpr (std::is_floating_point_v<Scalar>) {
    if (std::isnan(value)) {
      json += "\"nan\"";
      return;
    }
    if (std::isinf(value)) {
      json += value < 0 ? "\"-inf\"" : "\"inf\"";
      return;
    }
    if (value == 0 && std::signbit(value)) {
      json += "-0.0";
      return;
    }
  }
  Nimbra::appendNumber(json, value);
}

/// Appends an element: a string, a number, or a list of several components.
template <class T>
void appendJsonElement(std::string& json, const T& element) {
  if constexpr (std::is_same_v<T, std::string>) {
    appendJsonText(json, element);
  } else if constexpr (componentsOf<T>() == 1) {
    appendJsonNumber(json, element);
  } else {
    char separator = '[';
    for (const auto scalar : element) {
      json += separator;
      appendJsonNumber(json, scalar);
      separator = ',';
    }
    json += ']';
  }
}

} // namespace nimbrahost
