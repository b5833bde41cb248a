// SPDX-License-Identifier: BSD-3-Clause
// Reads the columns of a database block by block into buffers of the caller.
#pragma once

#include "container/format/api.h"
#include "container/format/element_type.h"
#include "container/read/database.h"

#include <cstdint>
#include <memory>
#include <string>

namespace container {

/// A position in a database, before its first record at first, and the buffers that its columns go to. Keeps the file
/// open. Not copied.
/// \threads as the Database: one thread at a time
class CONTAINER_API Cursor {
 public:
  explicit Cursor(const Database& database);
  Cursor(const Cursor&) = delete;
  Cursor& operator=(const Cursor&) = delete;
  ~Cursor();

  /// From the next `next` on, writes attribute `name` to `buffer` as elements of `type`, as many values per record as
  /// the attribute has. A second bind of a name replaces the first. Values are converted as conversion.h describes.
  ///
  /// \param buffer  stays the caller's; must hold the `count` records of each `next`; any alignment
  /// \param stride  bytes from one record to the next; 0 for tightly packed records
  /// \errors Error for an unknown name, a null buffer and a stride below the size of a record
  void bind(const std::string& name, ElementType type, void* buffer, int stride = 0);

  /// The same for values as they are stored: of the attribute's own type, without scale and offset.
  /// \errors as bind()
  void bindStored(const std::string& name, void* buffer, int stride = 0);

  /// Reads up to `count` further records into all bound buffers, each from its start.
  ///
  /// Encoded blocks are decoded in pieces of about 256 KiB, and each thread keeps the last one only: with several columns
  /// bound, calls for few records decode the same pieces again. Tens of thousands of records per call avoid that.
  /// \return how many were read, 0 at the end; counts on if nothing is bound
  /// \errors Error for a damaged or unreadable block; the position stays where it was, and the contents of the bound
  ///         buffers are unspecified
  std::uint64_t next(std::uint64_t count);

 private:
  struct State;
  std::unique_ptr<State> state;
};

} // namespace container
