// SPDX-License-Identifier: BSD-3-Clause
// Reads back what the tool has written, for tests.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace support {

/// All of a small database: its columns as doubles, its items as texts.
class DatabaseRows {
 public:
  explicit DatabaseRows(const std::string& path);

  std::uint64_t records() const { return recordCount; }
  const std::vector<std::string>& names() const { return columnNames; }
  bool has(const std::string& name) const;
  /// Record after record, all values of one after the other; raises for an unknown name.
  std::vector<double> column(const std::string& name) const;
  /// The same without going through doubles.
  std::vector<std::uint64_t> wholeNumbers(const std::string& name) const;
  /// "float64 x 3".
  std::string typeOf(const std::string& name) const;
  /// The text of a metadata item; empty where there is none.
  std::string item(const std::string& name) const;

 private:
  std::string file;
  std::uint64_t recordCount = 0;
  std::vector<std::string> columnNames;
};

} // namespace support
