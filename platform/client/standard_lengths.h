// SPDX-License-Identifier: BSD-3-Clause
// How many values a record the well-known attributes have.
#pragma once

#include <optional>
#include <string>

namespace riegl::rdb::embedded {

/// The values a record that a reader of a well-known attribute makes room for.
struct LengthRange {
  unsigned least;
  unsigned most;
};

/// The range for `name`, or nothing for a name that isn't well known. A caller's buffer is sized by the name alone, so
/// an attribute that has more values a record would be written past its end.
std::optional<LengthRange> standardLength(const std::string& name);

} // namespace riegl::rdb::embedded
