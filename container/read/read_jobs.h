// SPDX-License-Identifier: BSD-3-Clause
// The work of one `next`: one job a block and bound column, independent of all others. Internal to this room.
#pragma once

#include "container/read/block_reader.h"
#include "container/read/conversion.h"
#include "container/read/database.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace riegl::rdb::embedded {

inline constexpr std::uint64_t noBlock = std::numeric_limits<std::uint64_t>::max();

/// Where one column goes.
struct Target {
  const Column* column = nullptr;
  unsigned char* buffer = nullptr;
  std::size_t recordBytes = 0;      ///< of a record in the buffer, without a gap
  std::size_t stride = 0;           ///< from one record of the buffer to the next
  Conversion conversion = nullptr;  ///< null where the stored bytes are what is asked for
  std::uint64_t verified = noBlock; ///< the block whose checksum an earlier `next` has found right
};

/// A part of one block on its way into one buffer.
struct ReadJob {
  const Target* target = nullptr;
  std::uint64_t block = 0;
  std::uint64_t firstRow = 0; ///< inside the block
  std::uint64_t rows = 0;
  std::uint64_t firstRecord = 0; ///< inside the buffer
};

/// The records [position, position + count) of all targets, cut at block borders; made one at a time, so that
/// small blocks cost no memory. Block after block, inside a block in the order of the targets.
class ReadJobs {
 public:
  ReadJobs(const BlockLayout& layout, const std::vector<Target>& targets, std::uint64_t position,
           std::uint64_t count);
  std::uint64_t size() const { return blocks * targets.size(); }
  ReadJob operator[](std::uint64_t index) const;
  /// Bytes in the file, for the choice of threads.
  std::uint64_t storedBytes() const;

 private:
  const BlockLayout& layout;
  const std::vector<Target>& targets;
  std::uint64_t begin, end, firstBlock, blocks;
};

/// Reads one job. A block with a checksum is read whole when it is first touched, and verified before any of
/// it counts as delivered.
void run(const ReadJob& job, const BlockLayout& layout, BlockReader& reader);

/// Runs all jobs on as many threads as the database offers; the failure of the first job that fails is
/// raised, whichever thread met it.
void runAll(const ReadJobs& jobs, Database& database);

} // namespace riegl::rdb::embedded
