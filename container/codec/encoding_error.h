// SPDX-License-Identifier: BSD-3-Clause
// The failure of a block that is not encoded as its format demands.
#pragma once

#include <stdexcept>
#include <string>

namespace container::codec {

/// Raised where encoded bytes are damaged or contradict themselves. The text names the part of the block, what was
/// expected and what was found, such as `header of pieces: expected filter 0, 1 or 2, found 7`; whoever catches it adds
/// column, file and number of the block in front.
class EncodingError : public std::runtime_error {
 public:
  EncodingError(const std::string& part, const std::string& expected, const std::string& found)
      : std::runtime_error(part + ": expected " + expected + ", found " + found) {}
};

} // namespace container::codec
