// SPDX-License-Identifier: BSD-3-Clause
// An open database file: its attributes and its metadata.
#pragma once

#include "container/format/api.h"
#include "container/format/attribute.h"
#include "container/format/extent.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace container {

struct OpenFile;

/// How the blocks of one attribute are stored.
struct StoredColumn {
  std::uint64_t blocks = 0;
  std::uint64_t encodedBlocks = 0; ///< the others are raw
  std::uint64_t bytes = 0;         ///< of all blocks, as they are stored
};

/// A database file, opened read-only. Copies share the file, which stays open until the last copy and the last
/// Cursor on it are gone; nobody can change its content meanwhile.
/// \threads one thread at a time for all copies and their cursors; databases opened separately are independent
class CONTAINER_API Database {
 public:
  /// Opens the file at `path` (UTF-8), reads its catalogue and checks it against the blocks that are there.
  ///
  /// \param threadCount  how many threads a Cursor may read with, the calling one included. 0 takes two, or one where
  ///                     this thread may run on a single processor only; 1 starts no thread. The values that are read
  ///                     never depend on it.
  /// \errors Error for a file that cannot be opened, is no database or contradicts itself
  explicit Database(const std::string& path, unsigned int threadCount = 0);

  /// The path as it was given.
  const std::string& path() const;
  std::uint64_t recordCount() const;
  /// Records per block; the last block holds the rest.
  std::uint64_t blockRows() const;

  std::size_t attributeCount() const;
  /// An attribute, in the order of the file. \param index  below attributeCount()
  const Attribute& attribute(std::size_t index) const;
  /// The attribute of that name, or null. It lives as long as the file is open.
  const Attribute* find(const std::string& name) const;
  /// The attribute of that name. \errors Error if there is none
  const Attribute& require(const std::string& name) const;

  /// The version of the file's format, 1 or 2. Only version 2 has a checksum of its attributes, items and blocks.
  int version() const;
  /// How an attribute's blocks are stored. \errors Error if there is none of that name
  StoredColumn storage(const std::string& name) const;
  /// How one block is stored, such as "raw", "deflate, shuffle" or "lz4, delta and shuffle, scaled". Reads the head of
  /// an encoded block. \errors Error for an unknown attribute or block, and for a damaged head
  std::string encoding(const std::string& name, std::uint64_t block) const;

  /// The integers that stand for the values in an attribute's first encoded block: one scaling per component, or none.
  /// Reads the head of that block. A writer that copies the attribute takes them as its hint. \errors as encoding()
  std::vector<SourceScaling> scaling(const std::string& name) const;

  /// The least and greatest values of each block of an attribute, after scale and offset, as the file states them; no
  /// block is read.
  /// \return  by block, then by component; empty where a block has none, and altogether where no block has any
  /// \errors  Error if there is no attribute of that name, or the extents are damaged, which the first call checks
  std::vector<std::vector<ComponentExtent>> blockExtents(const std::string& name) const;
  /// The same of all blocks together: one per component, or none where a block has none. \errors as blockExtents()
  std::vector<ComponentExtent> extents(const std::string& name) const;

  /// The text of a metadata item, or nothing. \errors Error for an item that holds no text
  std::optional<std::string> item(const std::string& name) const;
  /// The names of all items, sorted by their bytes. \errors Error for a name that is no text or occurs twice
  std::vector<std::string> itemNames() const;

 private:
  friend class Cursor;
  std::shared_ptr<OpenFile> file;
};

} // namespace container
