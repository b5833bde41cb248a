// SPDX-License-Identifier: BSD-3-Clause
// An open database file: its readers and its catalogue. Internal to the container.
#pragma once

#include "container/read/catalogue.h"
#include "container/read/extents.h"
#include "container/read/reader_pool.h"

#include <optional>
#include <string>
#include <vector>

namespace container {

/// Everything that is needed of a file to read it; a Database and its cursors share it.
struct OpenFile {
  /// \param threadCount  as in Database
  /// \errors Error for a file that cannot be opened or contradicts itself
  OpenFile(const std::string& path, unsigned int threadCount);

  Connection& connection() { return readers.first().connection(); }
  /// The column of that name. \errors Error if there is none
  const Column& requireColumn(const std::string& name);

  /// The extents of a column's blocks, read at the first call. \errors as readExtents()
  const ColumnExtents& extentsOf(const Column& column);

  ReaderPool readers;
  Catalogue catalogue;
  std::optional<std::vector<ColumnExtents>> extents;
};

} // namespace container
