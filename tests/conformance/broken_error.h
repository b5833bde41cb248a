// SPDX-License-Identifier: BSD-3-Clause
// The exception of the broken client.
#pragma once

#include "tests/conformance/broken_conversion.h"

#include <exception>
#include <string>
#include <utility>

namespace riegl::rdb {

class __attribute__((visibility("default"))) Error : public std::exception {
 public:
  Error(std::string happened, std::string more) : text(std::move(happened)), further(std::move(more)) {}
  const char* what() const noexcept override { return broken::has("whatIsNull") ? nullptr : text.c_str(); }
  const char* details() const noexcept {
    if (broken::has("detailsIsEmpty")) {
      return "";
    }
    return broken::has("detailsIsNull") ? nullptr : further.c_str();
  }

 private:
  std::string text;
  std::string further;
};

} // namespace riegl::rdb
