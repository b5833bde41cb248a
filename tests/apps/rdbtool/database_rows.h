// SPDX-License-Identifier: BSD-3-Clause
// Reads the databases that the tool has written.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace support {

/// The content of a small database: columns as doubles, metadata items as texts.
class DatabaseRows {
 public:
  explicit DatabaseRows(const std::string& path);

  std::uint64_t records() const { return recordCount; }
  const std::vector<std::string>& names() const { return columnNames; }
  bool has(const std::string& name) const;
  /// The values record by record; throws for an unknown name.
  std::vector<double> column(const std::string& name) const;
  /// The same without conversion to double.
  std::vector<std::uint64_t> wholeNumbers(const std::string& name) const;
  /// "float64 x 3".
  std::string typeOf(const std::string& name) const;
  /// The text of a metadata item; empty if there is none.
  std::string item(const std::string& name) const;

 private:
  std::string file;
  std::uint64_t recordCount = 0;
  std::vector<std::string> columnNames;
};

} // namespace support
