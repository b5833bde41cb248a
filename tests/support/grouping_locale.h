// SPDX-License-Identifier: BSD-3-Clause
// A C++ locale that groups digits, as a host may set it.
#pragma once

#include <locale>
#include <string>

namespace support {

/// Sets a C++ locale that separates groups of three digits by dots, while it lives.
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
