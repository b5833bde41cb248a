// SPDX-License-Identifier: BSD-3-Clause
// A locale as a host may choose it: digits in groups of three.
#pragma once

#include <locale>
#include <string>

namespace support {

/// While it lives, the process's C++ locale parts digits by dots.
class GroupingLocale {
 public:
  GroupingLocale() : before(std::locale::global(std::locale(std::locale::classic(), new Groups))) {}
  GroupingLocale(const GroupingLocale&) = delete;
  GroupingLocale& operator=(const GroupingLocale&) = delete;
  ~GroupingLocale() { std::locale::global(before); }

 private:
  struct Groups : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  std::locale before;
};

} // namespace support
