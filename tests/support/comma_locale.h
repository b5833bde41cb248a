// SPDX-License-Identifier: BSD-3-Clause
// A locale with the comma as decimal mark, made by the test, because a machine may have none.
#pragma once

#include "tests/support/temp_dir.h"

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace support {

/// Sets a C locale whose decimal mark is the comma, while it lives.
class CommaLocale {
 public:
  CommaLocale() {
    std::filesystem::create_directory(folder.path("comma"));
    std::ofstream(folder.path("comma/LC_NUMERIC"), std::ios::binary) << numbers();
    setenv("LOCPATH", folder.root().c_str(), 1);
    made = std::setlocale(LC_NUMERIC, "comma") != nullptr;
    unsetenv("LOCPATH");
  }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;
  ~CommaLocale() { std::setlocale(LC_NUMERIC, "C"); }

  /// False where the C library refuses the locale, because its files have another format.
  bool isSet() const { return made; }

 private:
  /// A file as localedef of the GNU C library writes it: magic number, count, six offsets, values.
  static std::string numbers() {
    return std::string("\x14\x11\x03\x20\6\0\0\0"
                       "\x20\0\0\0\x22\0\0\0\x23\0\0\0\x24\0\0\0\x28\0\0\0\x2c\0\0\0"
                       ",\0\0\0,\0\0\0\0\0\0\0ANSI_X3.4-1968\0",
                       59);
  }

  TempDir folder;
  bool made = false;
};

} // namespace support
