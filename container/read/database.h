// SPDX-License-Identifier: BSD-3-Clause
// An open database file: its catalogue, its metadata and its readers. Internal to this room.
#pragma once

#include "container/format/block_layout.h"
#include "container/read/block_reader.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace riegl::rdb::embedded {

/// Everything that a query needs of a file; shared by the Pointcloud and its queries.
class Database {
 public:
  /// Opens the file, reads its catalogue and checks it against the blocks that are there.
  /// \param threadCount  as in OpenSettings
  /// \errors Error for a file that cannot be opened or contradicts itself
  Database(const std::string& path, unsigned int threadCount);

  /// The division into blocks.
  const BlockLayout& layout() const { return division; }
  /// All attributes in the order of the file; a column stays where it is as long as the Database lives.
  const std::vector<Column>& columns() const { return catalogue; }
  /// The index of a column, or nothing.
  std::optional<std::size_t> columnNamed(const std::string& name) const;
  /// The column of that name; an Error if there is none.
  const Column& requireColumn(const std::string& name) const;
  const std::string& path() const { return readers.front()->connection().path(); }

  /// The text of a metadata item, or nothing. \errors Error for an item that holds no text
  std::optional<std::string> item(const std::string& name);
  /// The names of all items, sorted by their bytes. \errors Error for a name that is no text or stands twice
  std::vector<std::string> itemNames();

  /// The readers for up to `wanted` threads, at least one; fewer if the file cannot be opened once more, or
  /// another file has taken its place meanwhile.
  const std::vector<std::unique_ptr<BlockReader>>& readersFor(std::size_t wanted);

 private:
  void readLayout();
  void readAttributes();
  Column columnFrom(const Statement& row) const;
  void checkExtent() const;
  void readBlockIndex(Column& column);
  void checkOutermostBlocks();
  bool addReader();

  std::vector<std::unique_ptr<BlockReader>> readers;
  std::size_t mostReaders;
  BlockLayout division;
  std::vector<Column> catalogue;
  std::unordered_map<std::string, std::size_t> indexByName;
};

/// The database, or the Error for one that is not open.
Database& requireOpen(const std::shared_ptr<Database>& database);

} // namespace riegl::rdb::embedded
