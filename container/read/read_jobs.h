// SPDX-License-Identifier: BSD-3-Clause
// The work of one `next`: one job per block and bound column, independent of all others. Internal to the
// container.
#pragma once

#include "container/read/block_reader.h"
#include "container/read/reader_pool.h"
#include "container/read/target.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace container {

/// The records of one block that go into one buffer.
struct ReadJob {
  const Target* target = nullptr;
  std::uint64_t block = 0;
  std::uint64_t firstRow = 0; ///< inside the block
  std::uint64_t rows = 0;
  std::uint64_t firstRecord = 0; ///< inside the buffer
  // Encoded blocks are divided among several jobs, piece by piece: this one is number `part` of `parts`.
  std::uint64_t part = 0;
  std::uint64_t parts = 1;
};

/// The records [position, position + count) of all targets, cut at block borders. Ordered by block, target and part.
/// Jobs are computed on access, so that many small blocks need no memory.
class ReadJobs {
 public:
  ReadJobs(const BlockLayout& layout, const std::vector<Target>& targets, std::uint64_t position,
           std::uint64_t count);
  /// Divides the pieces of each encoded block among so many jobs.
  void divide(std::uint64_t jobsPerBlock) { parts = jobsPerBlock; }
  std::uint64_t size() const { return blocks * targets.size() * parts; }
  ReadJob operator[](std::uint64_t index) const;
  /// Bytes of records to read, those included that are read only for the checksum of their block; decides how many
  /// threads read.
  std::uint64_t bytesToRead() const;
  /// Whether any block is encoded, so that several threads may share it.
  bool hasEncodedBlocks() const;
  const BlockLayout& division() const { return layout; }

 private:
  bool isReadWhole(const Target& target, std::uint64_t block) const;

  const BlockLayout& layout;
  const std::vector<Target>& targets;
  std::uint64_t begin, end, firstBlock, blocks;
  std::uint64_t parts = 1;
};

/// Runs one job. A block with a checksum is read whole when it is first touched, and verified before any of its
/// records are reported as read; of an encoded block the pieces that hold the records are, each with its own checksum.
void run(const ReadJob& job, const BlockLayout& layout, BlockReader& reader);

/// Runs all jobs on as many threads as the pool has readers for, which share the pieces of encoded blocks. Rethrows the
/// failure of the lowest job that fails, whichever thread met it.
void runAll(ReadJobs jobs, ReaderPool& pool);

} // namespace container
