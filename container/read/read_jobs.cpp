// SPDX-License-Identifier: BSD-3-Clause
// The work of one `next`: reading, verifying and converting, on one thread or several.
#include "container/read/read_jobs.h"

#include "container/format/checksum.h"
#include "container/read/populate.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <exception>
#include <limits>
#include <mutex>
#include <thread>

namespace container {
namespace {

// Below this, starting a thread costs more than it gains.
constexpr std::uint64_t leastBytesForThreads = std::uint64_t{8} * 1024 * 1024;

// With more jobs per thread, all threads finish at about the same time without sharing blocks.
constexpr std::uint64_t mostDividedJobs = 32;

/// Reads a block's bytes in order and keeps their checksum.
class BlockPass {
 public:
  BlockPass(BlockReader& source, bool keepsChecksum) : reader(source), verifies(keepsChecksum) {}

  /// Reads the next bytes of the block to `to`.
  void read(unsigned char* to, std::size_t bytes) {
    reader.read(to, bytes, offset);
    offset += bytes;
    if (verifies) {
      checksum = crc32(checksum, to, bytes);
    }
  }
  /// Moves on to `target`; the bytes between are part of the checksum.
  void skipTo(std::size_t target) {
    if (!verifies) {
      offset = target;
      return;
    }
    reader.stored.resize(std::max(reader.stored.size(), std::min(chunkBytes, target - offset)));
    while (offset < target) {
      read(reader.stored.data(), std::min(chunkBytes, target - offset));
    }
  }
  std::uint32_t found() const { return checksum; }

 private:
  BlockReader& reader;
  bool verifies;
  std::size_t offset = 0;
  std::uint32_t checksum = 0;
};

void deliverStoredBytes(BlockPass& pass, unsigned char* to, std::size_t bytes) {
  while (bytes > 0) {
    const std::size_t part = std::min(bytes, chunkBytes);
    populate(to, part);
    pass.read(to, part);
    to += part;
    bytes -= part;
  }
}

void deliverRecords(BlockPass& pass, BlockReader& reader, const Target& target, unsigned char* to,
                    std::uint64_t rows) {
  const auto storedBytes = static_cast<std::size_t>(target.column->attribute.recordBytes());
  const std::size_t rowsAtOnce = std::clamp<std::size_t>(chunkBytes / storedBytes, 1, rows);
  reader.stored.resize(std::max(reader.stored.size(), rowsAtOnce * storedBytes));
  for (std::uint64_t done = 0; done < rows; done += rowsAtOnce) {
    const std::size_t part = std::min<std::size_t>(rowsAtOnce, rows - done);
    pass.read(reader.stored.data(), part * storedBytes);
    deliver(reader.stored.data(), target, to + done * target.stride, part, reader.converted);
  }
}

/// Copies a job's records to their buffer. \return the checksum of the whole block if it `verifies`
std::uint32_t copyRecords(const ReadJob& job, const BlockLayout& layout, BlockReader& reader, bool verifies) {
  const Target& target = *job.target;
  const auto storedBytes = static_cast<std::size_t>(target.column->attribute.recordBytes());
  BlockPass pass(reader, verifies);
  pass.skipTo(job.firstRow * storedBytes);
  unsigned char* const to = target.buffer + job.firstRecord * target.stride;
  if (target.takesStoredBytes()) {
    deliverStoredBytes(pass, to, job.rows * storedBytes);
  } else {
    deliverRecords(pass, reader, target, to, job.rows);
  }
  if (verifies) {
    pass.skipTo(layout.rows(job.block) * storedBytes);
  }
  return pass.found();
}

// Records [first, last) of a piece.
void deliverFromPiece(BlockReader& reader, const Target& target, std::uint32_t piece, std::uint64_t first,
                      std::uint64_t last, unsigned char* to) {
  const codec::PieceHeader& header = reader.encoded.header();
  const unsigned char* const records = reader.encoded.recordsOf(reader, piece);
  const std::size_t rowsAtOnce = std::max<std::size_t>(chunkBytes / header.recordBytes(), 1);
  for (std::uint64_t row = first; row < last; row += rowsAtOnce) {
    const auto part = static_cast<std::size_t>(std::min<std::uint64_t>(rowsAtOnce, last - row));
    deliver(records + row * header.recordBytes(), target, to + (row - first) * target.stride, part,
            reader.converted);
  }
}

// Pieces that are asked for whole, and as they are, are decoded straight into the buffer.
void runPieces(const ReadJob& job, const BlockLayout& layout, BlockReader& reader) {
  const Target& target = *job.target;
  EncodedBlock& block = reader.encoded;
  block.open(reader, *target.column, layout, job.block);
  const codec::PieceHeader& header = block.header();
  const std::uint64_t end = job.firstRow + job.rows;
  const std::uint64_t firstPiece = job.firstRow / header.recordsPerPiece;
  const std::uint64_t count = (end - 1) / header.recordsPerPiece + 1 - firstPiece;
  const std::uint64_t lastPiece = firstPiece + count * (job.part + 1) / job.parts;
  for (std::uint64_t piece = firstPiece + count * job.part / job.parts; piece < lastPiece; ++piece) {
    const std::uint64_t start = header.firstRecord(piece);
    const std::uint64_t first = std::max(job.firstRow, start);
    const std::uint64_t last = std::min(end, start + header.records(piece));
    unsigned char* const to = target.buffer + (job.firstRecord + first - job.firstRow) * target.stride;
    const auto number = static_cast<std::uint32_t>(piece);
    if (target.takesStoredBytes() && last - first == header.records(piece)) {
      populate(to, static_cast<std::size_t>(last - first) * target.stride);
      block.decode(reader, number, to);
    } else {
      deliverFromPiece(reader, target, number, first - start, last - start, to);
    }
  }
}

/// Keeps the failure of the lowest job that failed.
class FirstFailure {
 public:
  void report(std::uint64_t job, std::exception_ptr failure) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (job < lowest) {
      lowest = job;
      first = std::move(failure);
    }
  }
  void raise() const {
    if (first) {
      std::rethrow_exception(first);
    }
  }

 private:
  std::mutex mutex;
  std::uint64_t lowest = noBlock;
  std::exception_ptr first;
};

} // namespace

ReadJobs::ReadJobs(const BlockLayout& division, const std::vector<Target>& columns, std::uint64_t position,
                   std::uint64_t count)
    : layout(division), targets(columns), begin(position), end(position + count),
      firstBlock(position / division.blockRows),
      blocks(count == 0 ? 0 : (end - 1) / division.blockRows - firstBlock + 1) {}

ReadJob ReadJobs::operator[](std::uint64_t index) const {
  const std::uint64_t part = index % parts;
  index /= parts;
  const std::uint64_t block = firstBlock + index / targets.size();
  const std::uint64_t first = std::max(begin, layout.firstRow(block));
  const std::uint64_t last = std::min(end, layout.firstRow(block) + layout.rows(block));
  return {&targets[index % targets.size()],
          block,
          first - layout.firstRow(block),
          last - first,
          first - begin,
          part,
          parts};
}

bool ReadJobs::hasEncodedBlocks() const {
  return std::any_of(targets.begin(), targets.end(), [this](const Target& target) {
    for (std::uint64_t block = firstBlock; block < firstBlock + blocks; ++block) {
      if (target.column->isEncoded(block)) {
        return true;
      }
    }
    return false;
  });
}

// Its checksum covers the whole block.
bool ReadJobs::isReadWhole(const Target& target, std::uint64_t block) const {
  return !target.column->isEncoded(block) && target.verified != block;
}

std::uint64_t ReadJobs::bytesToRead() const {
  const std::uint64_t lastBlock = firstBlock + blocks - 1;
  std::uint64_t bytes = 0;
  for (const Target& target : targets) {
    const std::uint64_t first = isReadWhole(target, firstBlock) ? layout.firstRow(firstBlock) : begin;
    const std::uint64_t last =
        isReadWhole(target, lastBlock) ? layout.firstRow(lastBlock) + layout.rows(lastBlock) : end;
    bytes += target.column->attribute.recordBytes() * (last - first);
  }
  return bytes;
}

void run(const ReadJob& job, const BlockLayout& layout, BlockReader& reader) {
  if (job.target->column->isEncoded(job.block)) {
    runPieces(job, layout, reader);
    return;
  }
  if (job.part != 0) {
    return; // the first part reads the whole block
  }
  reader.open(*job.target->column, layout, job.block);
  const bool verifies = reader.checksum().has_value() && job.block != job.target->verified;
  if (verifies && reader.readPastSqlite()) {
    if (copyRecords(job, layout, reader, verifies) == reader.checksum()) {
      return;
    }
    reader.readThroughSqlite(); // its result is final
  }
  const std::uint32_t found = copyRecords(job, layout, reader, verifies);
  if (verifies) {
    reader.requireChecksum(found);
  }
}

void runAll(ReadJobs jobs, ReaderPool& pool) {
  constexpr std::uint64_t any = std::numeric_limits<std::uint32_t>::max();
  const bool isShared = jobs.hasEncodedBlocks();
  const std::uint64_t wanted = jobs.bytesToRead() < leastBytesForThreads ? 1 : isShared ? any : jobs.size();
  const auto& readers = pool.readersFor(static_cast<std::size_t>(wanted));
  if (isShared && jobs.size() < mostDividedJobs * readers.size()) {
    jobs.divide(readers.size());
  }
  std::atomic<std::uint64_t> taken = 0;
  std::atomic<bool> failed = false;
  FirstFailure failure;
  // Jobs are taken in rising order and finished once taken, so the lowest failure is the same on every run.
  const auto work = [&](BlockReader& reader) {
    for (std::uint64_t index = 0; !failed && (index = taken++) < jobs.size();) {
      try {
        run(jobs[index], jobs.division(), reader);
      } catch (...) {
        failure.report(index, std::current_exception());
        failed = true;
      }
    }
  };
  std::vector<std::thread> helpers;
  const auto threads = static_cast<std::size_t>(std::min<std::uint64_t>(readers.size(), wanted));
  helpers.reserve(threads);
  try {
    while (helpers.size() + 1 < threads) {
      helpers.emplace_back(work, std::ref(*readers[helpers.size() + 1]));
    }
  } catch (const std::exception&) {
    // The system has no further thread, or no memory for one: this one and those that run do the work.
  }
  work(*readers.front());
  for (std::thread& helper : helpers) {
    helper.join();
  }
  failure.raise();
}

} // namespace container
