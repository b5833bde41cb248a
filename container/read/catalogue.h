// SPDX-License-Identifier: BSD-3-Clause
// The catalogue of an open database: its attributes and their division into blocks. Internal to the container.
#pragma once

#include "container/format/block_layout.h"
#include "container/format/catalogue_text.h"
#include "container/read/column.h"
#include "container/read/connection.h"

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace container {

/// What the tables say of a database, checked against the size of the file and the rows of the blocks, and in version 2
/// against the checksum of the catalogue.
class Catalogue {
 public:
  /// \errors Error for tables that contradict themselves, each other or the size of the file
  explicit Catalogue(Connection& connection);

  const BlockLayout& layout() const { return division; }
  /// All columns in the order of the file; each keeps its address as long as the catalogue lives.
  const std::vector<Column>& columns() const { return all; }
  /// The column of that name, or null.
  const Column* find(const std::string& name) const;

 private:
  void readLayout(Connection& connection);
  void readAttributes(Connection& connection);
  void readProtectedTables(Connection& connection);
  void checkSize(const Connection& connection) const;

  BlockLayout division;
  std::vector<Column> all;
  std::unordered_map<std::string, std::size_t> indexByName;
  TextChecksum text{catalogueHeading};
};

} // namespace container
