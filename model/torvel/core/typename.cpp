// SPDX-License-Identifier: BSD-3-Clause
// Demangles the name of a type.
#include "model/torvel/core/typename.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>

namespace Torvel {

std::string Typename(const std::type_info& type) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> readable(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
  return status == 0 && readable ? std::string(readable.get()) : std::string(type.name());
}

} // namespace Torvel
