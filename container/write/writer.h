// SPDX-License-Identifier: BSD-3-Clause
// Makes a database file.
#pragma once

#include "container/format/api.h"
#include "container/format/attribute.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace container {

/// How the blocks of a file are encoded.
enum class BlockEncoding {
  raw,    ///< the records as they are
  lz4,    ///< LZ4 blocks: small, and the fastest to decode
  deflate ///< zlib streams: smaller, slower to decode; Python's standard library reads them
};

struct WriterSettings {
  /// Records per block. The default divides the 5,000,000 records that loads read at a time, so that no block is read
  /// twice. It is large because each block costs a search and a page of its own: with 125,000 records a load of
  /// 20 million takes 5 % longer.
  std::uint32_t blockRows = 1000000;
  /// Whether each block has a CRC-32. Only version 1 may be without.
  bool checksums = true;
  /// The version of the format: 2, or 1 for programs that read no other; that has raw blocks only.
  int version = 2;
  /// The codec to try. A block that it does not make smaller is stored raw. The writer chooses for each block, on a
  /// sample of its records, which filter to apply and whether real values are stored as scaled integers.
  BlockEncoding encoding = BlockEncoding::raw;
  /// Threads that encode blocks while the calling thread inserts them; 0 takes one per processor that this thread may
  /// run on, and 64 is the most. Raw blocks take no thread. The file never depends on it.
  unsigned int threadCount = 0;
};

/// Writes a database file. The content goes to a temporary file beside `path`, in one transaction; finish() renames it to
/// `path`. Without finish() the temporary file is removed and the file at `path` stays untouched. A symbolic link is
/// followed: the file that it points to is replaced, not the link. A process killed half-way leaves
/// "<path>.<pid>-<n>.partial".
///
/// In version 2 the file states the extents of each block of an attribute with up to 16 values per record.
///
/// Memory: the records of one block of every column, and, where blocks are encoded, up to 256 MiB of records that wait
/// for it, or one block if that is larger, and their encoded forms.
/// \errors  Error from every operation; after a failed write or finish the writer is of no further use
/// \threads one thread at a time; distinct writers are independent
class CONTAINER_API Writer {
 public:
  explicit Writer(const std::string& path, WriterSettings settings = {});
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  ~Writer();

  /// Adds a column, before the first write; returns its index.
  /// \param source  what the stored values of a real attribute were made from, where that is known: one per component,
  ///                or none. A hint, tried before powers of ten; it is used only where it gives every value of a block
  ///                bit for bit, and never changes a value. Ignored for integer attributes and raw blocks.
  std::size_t addAttribute(const Attribute& attribute, const std::vector<SourceScaling>& source = {});
  /// Sets a text item, any time before finish; a second value replaces the first. In version 2 the names and values of
  /// all items together have at most 32 MiB.
  void setMetadata(const std::string& name, const std::string& value);
  /// Appends `rows` records.
  /// \param columns  one pointer per attribute, in their order, to rows x length values of the attribute's type,
  ///                 tightly packed, any alignment; read during the call only
  void write(std::uint64_t rows, const std::vector<const void*>& columns);
  /// Records written so far.
  std::uint64_t rows() const;
  /// Completes the file and puts it in place; nothing else may be called after it.
  void finish();

 private:
  struct State;
  std::unique_ptr<State> state;
};

} // namespace container
