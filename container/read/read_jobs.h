// SPDX-License-Identifier: BSD-3-Clause
// The work of one `next`: one job per block and bound column, independent of all others. Internal to the
// container.
#pragma once

#include "container/read/block_reader.h"
#include "container/read/conversion.h"
#include "container/read/reader_pool.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace container {

inline constexpr std::uint64_t noBlock = std::numeric_limits<std::uint64_t>::max();

/// The buffer that receives one column.
struct Target {
  const Column* column = nullptr;
  unsigned char* buffer = nullptr;
  std::size_t recordBytes = 0;      ///< of a record in the buffer, without the gap behind it
  std::size_t stride = 0;           ///< from one record of the buffer to the next
  Conversion conversion = nullptr;  ///< null where the stored bytes are what is asked for
  std::uint64_t verified = noBlock; ///< the block whose checksum an earlier `next` confirmed
};

/// The records of one block that go into one buffer.
struct ReadJob {
  const Target* target = nullptr;
  std::uint64_t block = 0;
  std::uint64_t firstRow = 0; ///< inside the block
  std::uint64_t rows = 0;
  std::uint64_t firstRecord = 0; ///< inside the buffer
};

/// The records [position, position + count) of all targets, cut at block borders. Ordered by block, then by target.
/// Jobs are computed on access, so that many small blocks need no memory.
class ReadJobs {
 public:
  ReadJobs(const BlockLayout& layout, const std::vector<Target>& targets, std::uint64_t position,
           std::uint64_t count);
  std::uint64_t size() const { return blocks * targets.size(); }
  ReadJob operator[](std::uint64_t index) const;
  /// Bytes to read from the file; decides how many threads read.
  std::uint64_t storedBytes() const;
  const BlockLayout& division() const { return layout; }

 private:
  const BlockLayout& layout;
  const std::vector<Target>& targets;
  std::uint64_t begin, end, firstBlock, blocks;
};

/// Runs one job. A block with a checksum is read whole when it is first touched, and verified before any of its
/// records are reported as read.
void run(const ReadJob& job, const BlockLayout& layout, BlockReader& reader);

/// Runs all jobs on as many threads as the pool has readers for. Rethrows the failure of the lowest job that fails,
/// whichever thread met it.
void runAll(const ReadJobs& jobs, ReaderPool& pool);

} // namespace container
