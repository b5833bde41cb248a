// SPDX-License-Identifier: BSD-3-Clause
// Opens a database file and checks its catalogue against the blocks that are there.
#include "container/read/open_file.h"

namespace container {

OpenFile::OpenFile(const std::string& path, unsigned int threadCount)
    : readers(path, threadCount), catalogue(connection()) {
  const BlockLayout& layout = catalogue.layout();
  if (layout.records == 0 || connection().version() != firstVersion) {
    return; // a checksum covers the catalogue of later versions
  }
  // A wrong count of records shows in the sizes of blocks; the first and the last of a column are enough, and cost
  // two pages.
  for (const Column& column : catalogue.columns()) {
    readers.first().open(column, layout, 0);
    if (layout.blockCount() > 1) {
      readers.first().open(column, layout, layout.blockCount() - 1);
    }
  }
}

const ColumnExtents& OpenFile::extentsOf(const Column& column) {
  if (!extents) {
    extents = readExtents(connection(), catalogue.layout(), catalogue.columns());
  }
  return (*extents)[static_cast<std::size_t>(&column - catalogue.columns().data())];
}

const Column& OpenFile::requireColumn(const std::string& name) {
  const Column* const column = catalogue.find(name);
  if (column == nullptr) {
    throw Error(ErrorKind::wrongUse, "the database has no such attribute",
                "column \"" + name + "\" of " + connection().path() + ": expected one of its " +
                    std::to_string(catalogue.columns().size()) + " attributes, found none of that name");
  }
  return *column;
}

} // namespace container
