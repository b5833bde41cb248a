// SPDX-License-Identifier: BSD-3-Clause
// The readers of one file, one per thread. Internal to the container.
#pragma once

#include "container/read/block_reader.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace container {

/// Opens further readers of a file when more threads want to read it.
class ReaderPool {
 public:
  /// \param threadCount  as in Database
  /// \errors Error if the file cannot be opened
  ReaderPool(const std::string& path, unsigned int threadCount);

  /// The reader that is always there.
  BlockReader& first() { return *readers.front(); }
  /// Readers for up to `wanted` threads, at least one; fewer if the file cannot be opened once more, or another file
  /// has taken its place meanwhile.
  const std::vector<std::unique_ptr<BlockReader>>& readersFor(std::size_t wanted);

 private:
  bool addReader();

  std::vector<std::unique_ptr<BlockReader>> readers;
  std::size_t mostReaders;
};

} // namespace container
