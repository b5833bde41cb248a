// SPDX-License-Identifier: BSD-3-Clause
// Fresh memory on huge pages, and reads of a file into it: the fastest way that the benchmarks compare a load with.
#pragma once

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <string>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>

namespace bench {

/// Fresh zero pages; huge ones are asked for. Aligned to them.
class FreshMemory {
 public:
  explicit FreshMemory(std::size_t bytes) : mapped(bytes + hugePageBytes) {
    place = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (place == MAP_FAILED) {
      throw std::system_error(errno, std::generic_category(), "mmap");
    }
    madvise(place, mapped, MADV_HUGEPAGE);
  }
  FreshMemory(const FreshMemory&) = delete;
  FreshMemory& operator=(const FreshMemory&) = delete;
  ~FreshMemory() { munmap(place, mapped); }

  unsigned char* bytes() const {
    const auto address = reinterpret_cast<std::uintptr_t>(place);
    return static_cast<unsigned char*>(place) + (hugePageBytes - address % hugePageBytes) % hugePageBytes;
  }

 private:
  static constexpr std::size_t hugePageBytes = std::size_t{1} << 21;
  std::size_t mapped;
  void* place;
};

/// A file open for reading. \errors std::system_error if it can't be opened
class OpenFile {
 public:
  explicit OpenFile(const std::string& path) : number(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (number < 0) {
      throw std::system_error(errno, std::generic_category(), "opening " + path);
    }
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { close(number); }

  int descriptor() const { return number; }

 private:
  int number;
};

/// Reads the pieces `first`, `first + every`, `first + 2 * every` and so on of a file's first `bytes` bytes to their
/// places, through the page cache. A piece is large. \errors std::system_error, also for a file that is shorter
inline void readPieces(const std::string& path, unsigned char* to, std::size_t bytes, std::size_t first,
                       std::size_t every) {
  constexpr std::size_t pieceBytes = std::size_t{8} << 20;
  const OpenFile file(path);
  for (std::size_t piece = first; piece * pieceBytes < bytes; piece += every) {
    const std::size_t end = std::min(bytes, (piece + 1) * pieceBytes);
    for (std::size_t done = piece * pieceBytes; done < end;) {
      const ssize_t got = pread(file.descriptor(), to + done, end - done, static_cast<off_t>(done));
      if (got <= 0) {
        throw std::system_error(got < 0 ? errno : ENODATA, std::generic_category(), "reading " + path);
      }
      done += static_cast<std::size_t>(got);
    }
  }
}

/// Reads the first `bytes` bytes of a file on this thread.
inline void readWhole(const std::string& path, unsigned char* to, std::size_t bytes) {
  readPieces(path, to, bytes, 0, 1);
}

} // namespace bench
